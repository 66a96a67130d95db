#include "input/SharedMemoryManager.h"

#include "app/Application.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>

SharedMemoryManager::SharedMemoryManager(Application *application)
    : m_application(application)
{
    connect(application, &Application::openGLReady, this, &SharedMemoryManager::initFakeSurfaces,
            Qt::QueuedConnection);
    connect(application, &QCoreApplication::aboutToQuit, this, &SharedMemoryManager::onAboutToQuit);
}

SharedMemoryManager::~SharedMemoryManager()
{
    stop();
}

void SharedMemoryManager::initFakeSurfaces()
{
    QOpenGLContext *shareContext = m_application->sharedGlContext();
    if (m_surface || !shareContext)
        return;
    // A surface can be made on this thread only; the context is made where it is used.
    m_surface = std::make_unique<QOffscreenSurface>();
    m_surface->setFormat(shareContext->format());
    m_surface->create();

    m_thread = new SharedMemoryThread(SharedMemoryBlock::defaultName(), shareContext,
                                      m_surface.get(), &m_published);
    connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    connect(m_thread, &SharedMemoryThread::logTextChanged, this, [this](const QString &text) {
        m_logMessage = text;
        emit logMessageChanged();
    });
    m_thread->start();
}

void SharedMemoryManager::onAboutToQuit()
{
    stop();
}

void SharedMemoryManager::stop()
{
    if (!m_thread)
        return;
    m_thread->stop();
    m_thread->wait();
    // No event loop may run any more to serve its deleteLater().
    delete m_thread.data();
}
