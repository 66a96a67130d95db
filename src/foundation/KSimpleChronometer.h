#pragma once

// High-resolution stopwatch; each is owned and used by one thread.

#include <QString>
#include <QtGlobal>

class KSimpleChronometer
{
public:
    /// Units of Elapsed(); any other number means seconds.
    enum Unit { Hours, Minutes, Seconds, Milliseconds, Microseconds, Nanoseconds };

    KSimpleChronometer();
    virtual ~KSimpleChronometer();

    /// Starts a stopped one anew; changes nothing while running.
    void Start();
    /// Back to zero, running on if it runs.
    void Restart();
    /// Keeps the time since the start; changes nothing while stopped.
    void Stop();
    /// Ticks since the start while running, else those of the last run; never negative.
    qint64 Ticks() const;
    double Elapsed(int unit) const;

    /// Ticks per second of the counter that all chronometers read.
    static qint64 Frequency();

    /// @p ticks of a counter with @p frequency ticks per second, in @p unit.
    static double ToUnit(qint64 ticks, qint64 frequency, int unit);

    /// Readable text in the largest unit of which there is more than one: "1 h:1 min:40 s",
    /// "1 min:30 s", "1.5 s", "500 ms", "12 us" or "7 ns". Zero for a frequency that is not
    /// positive.
    static QString ToText(qint64 ticks, qint64 frequency);

private:
    qint64 m_frequency;
    qint64 m_startTick = 0;
    qint64 m_elapsedTicks = 0;
    bool m_running = false;
};
