#include "video/VideoSurfaceGate.h"

void VideoSurfaceGate::open(Anchor anchor)
{
    QMutexLocker lock(&m_mutex);
    m_anchor = anchor;
    m_changed.wakeAll();
}

VideoSurfaceGate::Anchor VideoSurfaceGate::wait()
{
    QMutexLocker lock(&m_mutex);
    while (!m_anchor.surface && m_closed == 0)
        m_changed.wait(&m_mutex);
    return m_anchor;
}

VideoSurfaceGate::Closed::Closed(VideoSurfaceGate &gate)
    : m_gate(gate)
{
    QMutexLocker lock(&m_gate.m_mutex);
    ++m_gate.m_closed;
    m_gate.m_changed.wakeAll();
}

VideoSurfaceGate::Closed::~Closed()
{
    QMutexLocker lock(&m_gate.m_mutex);
    --m_gate.m_closed;
}
