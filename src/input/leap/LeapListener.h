#pragma once

// Carries the tracker's callbacks out of its library's thread: it only emits. Owned by LeapTracker.

#include <Leap.h>

#include <QObject>

#include <atomic>

class LeapListener : public QObject, public Leap::Listener
{
    Q_OBJECT

public:
    void onConnect(const Leap::Controller &controller) override;
    void onDisconnect(const Leap::Controller &controller) override;
    void onFrame(const Leap::Controller &controller) override;

    /// The frame that was told has been taken; the next one is told again. Until then a fast
    /// tracker does not fill the queue of a busy program.
    void frameTaken() { m_told = false; }

signals:
    void frameArrive();
    void leapConnected(bool connected);

private:
    std::atomic<bool> m_told{false};
};
