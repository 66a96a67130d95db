#pragma once

// Where libvlc's video thread waits until the GUI thread has made the surface and the context that
// the video thread's own context needs. Owned by the player item; every call is thread-safe.

#include <QMutex>
#include <QWaitCondition>

class QOffscreenSurface;
class QOpenGLContext;

class VideoSurfaceGate
{
public:
    struct Anchor
    {
        QOffscreenSurface *surface = nullptr; ///< to be made current on
        QOpenGLContext *share = nullptr;      ///< member of the scene graph's share group
    };

    void open(Anchor anchor);

    /// Blocks until open(). Null fields while a Closed lives: the GUI thread then waits for the
    /// video thread's end, so the video thread must not wait for the GUI thread.
    Anchor wait();

    /// Keeps the gate from blocking while the GUI thread waits for libvlc's threads.
    class Closed
    {
    public:
        explicit Closed(VideoSurfaceGate &gate);
        ~Closed();
        Closed(const Closed &) = delete;
        Closed &operator=(const Closed &) = delete;

    private:
        VideoSurfaceGate &m_gate;
    };

private:
    QMutex m_mutex;
    QWaitCondition m_changed;
    Anchor m_anchor;
    int m_closed = 0;
};
