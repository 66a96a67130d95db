#pragma once

// Waits for the frames of a depth camera on a thread of its own. Owned by KRealSense. What crosses:
// the newest frame under a lock, with the gestures of those it replaced, and queued signals.

#include "input/realsense/DepthFrame.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <optional>

class DepthCamera;

class KRealSenseThread : public QThread
{
    Q_OBJECT

public:
    /// @p camera has started and outlives the run.
    explicit KRealSenseThread(DepthCamera *camera);
    ~KRealSenseThread() override;

    /// While nobody wants frames the camera rests.
    void setWanted(bool wanted);

    /// The newest frame since the last call, if there is one.
    std::optional<DepthFrame> take();

signals:
    /// A frame lies ready; once until it is taken.
    void frameReady();
    void cameraLost();

protected:
    void run() override;

private:
    bool waitUntilWanted();
    void put(DepthFrame frame);

    DepthCamera *const m_camera;
    QMutex m_lock;
    QWaitCondition m_change;
    // Under m_lock.
    bool m_wanted = false;
    bool m_ending = false;
    std::optional<DepthFrame> m_newest;
};
