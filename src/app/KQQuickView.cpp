#include "app/KQQuickView.h"

#include "crash/CrashHandler.h"
#include "foundation/KVersion.h"
#include "update/KUpdateManager.h"

#include <QColor>
#include <QDateTime>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QUrl>

#include <algorithm>

namespace {

/// An address as people write it: names with blanks and percent signs as they are on the disk, in
/// one line.
QString readable(const QString &address)
{
    QString text = QUrl::fromPercentEncoding(address.toUtf8());
    std::replace_if(
        text.begin(), text.end(),
        [](QChar letter) { return letter.category() == QChar::Other_Control; }, QLatin1Char(' '));
    return text;
}

} // namespace

KQQuickView::KQQuickView(bool touchTable, const QString &updateServer, KSettingsManager *store,
                         CrashHandler *crashHandler, QWindow *parent)
    : QQuickView(parent)
    , m_updateManager(std::make_unique<KUpdateManager>(updateServer, store))
    , m_crashHandler(crashHandler)
    , m_fullScreen(touchTable)
    , m_gpuInfo(tr("Cannot get GPU version"))
{
    // The panorama clears what it covers; the scene lies over an opaque rectangle of its own.
    setClearBeforeRendering(false);
    connect(m_updateManager.get(), &KUpdateManager::NewVersionAvailable, this,
            &KQQuickView::OnNewVersionAvailable);
    connect(m_updateManager.get(), &KUpdateManager::AlreadyLatestVersion, this,
            &KQQuickView::OnAlreadyLatestVersion);
    connect(this, &QWindow::windowStateChanged, this, &KQQuickView::onWindowStateChanged);
    connect(this, &QQuickWindow::beforeRendering, this, &KQQuickView::computeGpuInfo,
            Qt::DirectConnection);
    connect(this, &QQuickWindow::afterRendering, this, &KQQuickView::computeFps,
            Qt::DirectConnection);
}

KQQuickView::~KQQuickView()
{
    hide(); // waits for the render thread, which calls slots of this class
}

void KQQuickView::fullScreenMode(bool enabled)
{
    if (enabled)
        showFullScreen();
    else
        showNormal();
}

QString KQQuickView::version() const
{
    return KVersion::majorMinor(KVersion::fullText()) + QLatin1String(" (32bits)");
}

QString KQQuickView::title() const
{
    return QStringLiteral("%1 %2").arg(KVersion::productName(),
                                       KVersion::majorMinor(KVersion::fullText()));
}

void KQQuickView::updateTitle(const QString &newSource)
{
    QString text = KVersion::productName();
    if (!newSource.isEmpty())
        text += QStringLiteral(" - %1").arg(readable(newSource));
    setTitle(text);
}

bool KQQuickView::checkUpdatePossible() const
{
    return m_updateManager->isEnabled();
}

void KQQuickView::startUpdates(const QString &productId)
{
    m_updateManager->Start(productId, KVersion::fullText(), QString());
}

bool KQQuickView::isNewVersionAvailable() const
{
    return !newVersion().isEmpty();
}

void KQQuickView::checkUpdate()
{
    m_updateManager->CheckForNewVersion();
}

QString KQQuickView::newVersion() const
{
    return m_updateManager->newVersion();
}

QDate KQQuickView::newVersionDate() const
{
    return m_updateManager->newVersionDate();
}

QString KQQuickView::newChangeLog() const
{
    return m_updateManager->newChangeLog();
}

QString KQQuickView::urlDownload() const
{
    return m_updateManager->urlInstaller();
}

QString KQQuickView::urlHistory() const
{
    return m_updateManager->urlHistory();
}

QString KQQuickView::urlWebsite() const
{
    return m_updateManager->urlWebsite();
}

void KQQuickView::displayCrashManager()
{
    if (m_crashHandler)
        m_crashHandler->showReporter();
}

QColor KQQuickView::colorTeam() const
{
    return {0x00, 0xA3, 0xDA};
}

void KQQuickView::OnNewVersionAvailable()
{
    emit displayPopup(QStringLiteral("qrc:/qml/popup/PopupUpdateAvailable.qml"));
}

void KQQuickView::OnAlreadyLatestVersion()
{
    // Nobody asked a scheduled check anything.
    if (!m_updateManager->isManualCheck())
        return;
    emit displayMessage(tr("There is no update for this product.\n"
                           "Your are already running the most up to date version."));
}

bool KQQuickView::nativeEvent(const QByteArray &eventType, void *message, long *result)
{
    emit signalNativeEvent(eventType, message, result);
    return QQuickView::nativeEvent(eventType, message, result);
}

void KQQuickView::mouseMoveEvent(QMouseEvent *event)
{
    // The gaze inside a headset moves over the scenes beside the window, not over the window.
    if (event->source() != Qt::MouseEventSynthesizedByApplication)
        emit mouseMoved(event->x(), event->y());
    QQuickView::mouseMoveEvent(event);
}

void KQQuickView::onWindowStateChanged(Qt::WindowState state)
{
    const bool fullScreen = state == Qt::WindowFullScreen;
    if (m_fullScreen == fullScreen)
        return;
    m_fullScreen = fullScreen;
    emit fullScreenChanged();
}

void KQQuickView::computeGpuInfo()
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (!context)
        return;
    disconnect(this, &QQuickWindow::beforeRendering, this, &KQQuickView::computeGpuInfo);
    QOpenGLFunctions *gl = context->functions();
    const auto text = [gl](GLenum name) {
        return QString::fromLatin1(reinterpret_cast<const char *>(gl->glGetString(name)));
    };
    GLint size = 0;
    gl->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    const QString info = tr("Renderer : %1 \nOpenGL Version : %2 \nMaximum texture size : %3\n")
                             .arg(text(GL_RENDERER), text(GL_VERSION))
                             .arg(size);
    QMetaObject::invokeMethod(
        this,
        [this, info, size] {
            m_gpuInfo = info;
            m_maxTextureSize = QSize(size, size);
            emit gpuInfoChanged();
            emit maxTextureSizeChanged();
        },
        Qt::QueuedConnection);
}

void KQQuickView::computeFps()
{
    const qint64 second = QDateTime::currentMSecsSinceEpoch() / 1000;
    if (second <= m_lastFpsSecond) {
        ++m_frameCounter;
        return;
    }
    m_lastFpsSecond = second;
    const int fps = m_frameCounter + 1;
    m_frameCounter = 0;
    QMetaObject::invokeMethod(
        this,
        [this, fps] {
            m_fps = fps;
            emit fpsChanged();
        },
        Qt::QueuedConnection);
}
