#include "foundation/KSimpleChronometer.h"

#include <chrono>
#include <cmath>

namespace {

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

double seconds(qint64 ticks, qint64 frequency)
{
    return frequency > 0 ? double(ticks) / double(frequency) : 0.0;
}

/// Cut, not rounded: a text never shows more time than has passed.
double threeDecimals(double value)
{
    return int(value * 1000) / 1000.0;
}

} // namespace

KSimpleChronometer::KSimpleChronometer()
    : m_frequency(Frequency())
{}

KSimpleChronometer::~KSimpleChronometer() = default;

qint64 KSimpleChronometer::Frequency()
{
    return 1000000000;
}

void KSimpleChronometer::Start()
{
    if (m_running)
        return;
    m_startTick = now();
    m_running = true;
}

void KSimpleChronometer::Restart()
{
    m_elapsedTicks = 0;
    if (m_running)
        m_startTick = now();
}

void KSimpleChronometer::Stop()
{
    m_elapsedTicks = Ticks();
    m_running = false;
}

qint64 KSimpleChronometer::Ticks() const
{
    return m_running ? qMax(now() - m_startTick, qint64(0)) : m_elapsedTicks;
}

double KSimpleChronometer::Elapsed(int unit) const
{
    return ToUnit(Ticks(), m_frequency, unit);
}

double KSimpleChronometer::ToUnit(qint64 ticks, qint64 frequency, int unit)
{
    const double time = seconds(ticks, frequency);
    switch (unit) {
    case Hours:
        return time / 3600;
    case Minutes:
        return time / 60;
    case Milliseconds:
        return time * 1000;
    case Microseconds:
        return time * 1000000;
    case Nanoseconds:
        return time * 1000000000;
    default:
        return time;
    }
}

QString KSimpleChronometer::ToText(qint64 ticks, qint64 frequency)
{
    const double time = seconds(ticks, frequency);
    const double hours = time / 3600;
    if (hours > 1.0) {
        const double wholeHours = std::floor(hours);
        const double wholeMinutes = std::floor(time / 60 - wholeHours * 60);
        const double rest = time - wholeHours * 3600 - wholeMinutes * 60;
        return QStringLiteral("%1 h:%2 min:%3 s")
            .arg(qint64(wholeHours))
            .arg(qint64(wholeMinutes))
            .arg(rest);
    }
    const double minutes = time / 60;
    if (minutes > 1.0) {
        const double wholeMinutes = std::floor(minutes);
        return QStringLiteral("%1 min:%2 s")
            .arg(qint64(wholeMinutes))
            .arg(time - wholeMinutes * 60);
    }
    if (time > 1.0)
        return QStringLiteral("%1 s").arg(threeDecimals(time));
    if (time * 1000 > 1.0)
        return QStringLiteral("%1 ms").arg(threeDecimals(time * 1000));
    if (time * 1000000 > 1.0)
        return QStringLiteral("%1 us").arg(threeDecimals(time * 1000000));
    return QStringLiteral("%1 ns").arg(time * 1000000000);
}
