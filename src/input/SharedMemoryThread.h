#pragma once

// Polls the block of another program for new frames and uploads each into a texture of its own GL
// context; owned by SharedMemoryManager. What crosses to other threads: the published texture name
// and size (atomics), and the log text by a queued signal.

#include "input/SharedFaults.h"
#include "input/SharedFrameReader.h"
#include "input/SharedFrameTexture.h"
#include "input/SharedMemoryBlock.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <memory>

class QOffscreenSurface;
class QOpenGLContext;

/// The newest frame as drawing threads see it. Written by the shared memory thread.
class PublishedFrame
{
public:
    void publish(int textureId, const QSize &size)
    {
        m_size = (quint64(quint32(size.width())) << 32) | quint32(size.height());
        m_textureId = textureId;
    }
    int textureId() const { return m_textureId; }
    QSize size() const
    {
        const quint64 size = m_size;
        return {int(quint32(size >> 32)), int(quint32(size))};
    }

private:
    std::atomic<int> m_textureId{0};
    std::atomic<quint64> m_size{~quint64(0)};
};

class SharedMemoryThread : public QThread
{
    Q_OBJECT

public:
    /// @p shareContext is current on no thread; it, @p surface and @p published outlive the run.
    SharedMemoryThread(const QString &blockName, QOpenGLContext *shareContext,
                       QOffscreenSurface *surface, PublishedFrame *published);
    ~SharedMemoryThread() override;

    /// Asks the run to end and wakes it; does not wait for it.
    void stop();

signals:
    void logTextChanged(const QString &text);

protected:
    void run() override;

private:
    [[nodiscard]] bool openBlock();
    [[nodiscard]] bool setUp();
    void pollBlock();
    void show(const SharedSlot &slot);
    void lookForNewBlock();
    void reportFaults();
    void tearDown();
    void sleepFor(int milliseconds);

    const QString m_blockName;
    QOpenGLContext *const m_shareContext;
    QOffscreenSurface *const m_surface;
    PublishedFrame *const m_published;

    QMutex m_sleepLock;
    QWaitCondition m_wake;

    // Of the run alone.
    SharedMemoryBlock m_block;
    bool m_accepted = false;
    SharedFaults m_faults;
    SharedFrameReader m_reader{&m_faults};
    std::unique_ptr<QOpenGLContext> m_decoderContext;
    std::unique_ptr<SharedFrameTexture> m_frameTexture;
    bool m_firstFrameDone = false;
    int m_pollInterval = SharedFrameReader::kDefaultInterval;
    QElapsedTimer m_idle;   // since a frame was taken or the block looked for
    QElapsedTimer m_report; // since the log text was told
    int m_reportedFaults = 0;
};
