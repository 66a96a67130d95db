#include "input/realsense/KRealSenseThread.h"

#include "foundation/KSignalStack.h"
#include "input/realsense/DepthCamera.h"

namespace {

// Gestures of frames that nobody took in time; a program that stands still that long missed them.
constexpr int kMostGestures = 64;
// A camera that answers at once that it has nothing must not take a processor.
constexpr unsigned long kNothingPauseMs = 2;

} // namespace

KRealSenseThread::KRealSenseThread(DepthCamera *camera)
    : m_camera(camera)
{}

KRealSenseThread::~KRealSenseThread()
{
    {
        QMutexLocker lock(&m_lock);
        m_ending = true;
    }
    m_change.wakeAll();
    wait();
}

void KRealSenseThread::setWanted(bool wanted)
{
    {
        QMutexLocker lock(&m_lock);
        m_wanted = wanted;
        m_newest.reset();
    }
    m_change.wakeAll();
}

std::optional<DepthFrame> KRealSenseThread::take()
{
    QMutexLocker lock(&m_lock);
    std::optional<DepthFrame> frame = std::move(m_newest);
    m_newest.reset();
    return frame;
}

bool KRealSenseThread::waitUntilWanted()
{
    QMutexLocker lock(&m_lock);
    while (!m_wanted && !m_ending)
        m_change.wait(&m_lock);
    return !m_ending;
}

void KRealSenseThread::put(DepthFrame frame)
{
    bool told = false;
    {
        QMutexLocker lock(&m_lock);
        if (!m_wanted)
            return;
        told = m_newest.has_value();
        if (told) {
            const QVector<DepthGesture> earlier =
                m_newest->gestures.mid(qMax(0, m_newest->gestures.size() - kMostGestures));
            frame.gestures = earlier + frame.gestures;
        }
        m_newest = std::move(frame);
    }
    if (!told)
        emit frameReady();
}

void KRealSenseThread::run()
{
    const KSignalStack signalStack;
    while (waitUntilWanted()) {
        DepthFrame frame;
        switch (m_camera->acquire(&frame)) {
        case DepthCamera::Acquired::Frame:
            put(std::move(frame));
            break;
        case DepthCamera::Acquired::Nothing:
            msleep(kNothingPauseMs);
            break;
        case DepthCamera::Acquired::Lost:
            emit cameraLost();
            return;
        }
    }
}
