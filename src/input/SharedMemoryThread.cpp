#include "input/SharedMemoryThread.h"

#include "foundation/KSignalStack.h"

#include <QLoggingCategory>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace {

Q_LOGGING_CATEGORY(logSharedMemory, "sharedmemory")

constexpr int kSearchInterval = 10; // ms
constexpr int kIdleTime = 1000;     // ms
constexpr int kReportTime = 1000;   // ms

} // namespace

SharedMemoryThread::SharedMemoryThread(const QString &blockName, QOpenGLContext *shareContext,
                                       QOffscreenSurface *surface, PublishedFrame *published)
    : m_blockName(blockName)
    , m_shareContext(shareContext)
    , m_surface(surface)
    , m_published(published)
{}

SharedMemoryThread::~SharedMemoryThread() = default;

void SharedMemoryThread::stop()
{
    const QMutexLocker lock(&m_sleepLock);
    requestInterruption();
    m_wake.wakeAll();
}

void SharedMemoryThread::sleepFor(int milliseconds)
{
    QMutexLocker lock(&m_sleepLock);
    if (!isInterruptionRequested())
        m_wake.wait(&m_sleepLock, static_cast<unsigned long>(milliseconds));
}

void SharedMemoryThread::run()
{
    const KSignalStack signalStack;
    m_report.start();
    while (!isInterruptionRequested()) {
        reportFaults();
        if (!m_accepted && !openBlock()) {
            sleepFor(kSearchInterval);
            continue;
        }
        if (!setUp()) {
            sleepFor(kIdleTime);
            continue;
        }
        pollBlock();
        sleepFor(m_pollInterval);
    }
    tearDown();
}

bool SharedMemoryThread::openBlock()
{
    if (!m_block.open(m_blockName))
        return false;
    m_accepted = m_reader.greet(m_block, m_block.readerHandle()) == BlockGreeting::Accepted;
    if (m_accepted)
        m_pollInterval = m_reader.pollInterval(m_block);
    else
        m_block.close();
    m_idle.start();
    return m_accepted;
}

bool SharedMemoryThread::setUp()
{
    if (!m_decoderContext) {
        auto context = std::make_unique<QOpenGLContext>();
        context->setShareContext(m_shareContext);
        context->setFormat(m_shareContext->format());
        if (!context->create())
            return false;
        m_decoderContext = std::move(context);
    }
    if (!m_decoderContext->makeCurrent(m_surface))
        return false;
    if (!m_frameTexture) {
        m_frameTexture = std::make_unique<SharedFrameTexture>();
        m_reader.setLargestTexture(SharedFrameTexture::largestTexture());
    }
    return true;
}

void SharedMemoryThread::pollBlock()
{
    if (const std::optional<SharedSlot> slot = m_reader.take(m_block)) {
        show(*slot);
        m_idle.start();
    } else if (m_idle.hasExpired(kIdleTime)) {
        lookForNewBlock();
        m_pollInterval = m_reader.pollInterval(m_block);
        m_idle.start();
    }
}

void SharedMemoryThread::show(const SharedSlot &slot)
{
    // Nobody may draw from a texture that is about to end.
    if (m_frameTexture->isReplacedBy(slot.width, slot.height, slot.format))
        m_published->publish(0, QSize(-1, -1));
    m_frameTexture->setLayout(slot.width, slot.height, slot.format);

    if (slot.dataOffset == 0) {
        m_reader.release(m_block, slot);
        return;
    }
    std::uint8_t *target = m_frameTexture->beginFrame();
    if (!target)
        m_faults.add(SharedFault::NoTexture);
    const bool complete = target && m_reader.copy(m_block, slot, target, m_frameTexture->pitch(),
                                                  m_frameTexture->rows());
    m_reader.release(m_block, slot);
    m_frameTexture->endFrame(complete);
    if (!complete)
        return;

    QOpenGLFunctions *functions = m_decoderContext->functions();
    if (m_firstFrameDone)
        functions->glFlush();
    else
        functions->glFinish();
    m_firstFrameDone = true;
    m_published->publish(m_frameTexture->textureId(), m_frameTexture->size());
}

void SharedMemoryThread::lookForNewBlock()
{
    if (m_block.isReplaced(m_blockName) || !m_reader.isKnownTo(m_block))
        m_accepted = false; // the next turn opens what is there now
    else
        m_reader.acceptRestart(m_block);
}

void SharedMemoryThread::reportFaults()
{
    const bool news = m_faults.takeNews();
    if (news)
        qCWarning(logSharedMemory).noquote() << m_faults.text().trimmed();
    const int total = m_faults.total();
    if (!news && (total == m_reportedFaults || !m_report.hasExpired(kReportTime)))
        return;
    m_reportedFaults = total;
    m_report.start();
    emit logTextChanged(m_faults.text());
}

void SharedMemoryThread::tearDown()
{
    m_published->publish(0, QSize(-1, -1));
    reportFaults();
    m_block.close();
    if (m_decoderContext && m_decoderContext->makeCurrent(m_surface)) {
        m_frameTexture.reset();
        m_decoderContext->doneCurrent();
    }
    m_decoderContext.reset();
}
