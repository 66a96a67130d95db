// The playlist half of KGlobalObject: what is opened, what comes next, and how each medium is to
// be seen. Apart from the camera half only because of its length.

#include "app/KGlobalObject.h"

#include "KImage/ImageDef.h"
#include "KImage/ImageFormats.h"
#include "app/Application.h"
#include "app/MediaChoice.h"
#include "app/MovieMetadata.h"
#include "app/PlayListReader.h"
#include "app/StillOptions.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "video/VlcConfig.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(playlistLog, "playlist")

namespace {

/// A still that was paused stays at least this long once it goes on.
constexpr int kResumedStillMs = 3000;
/// Position reports of the fallback backend, milliseconds: one a frame at 50 frames a second.
constexpr int kNotifyIntervalMs = 20;

/// Turns the view's middle to where a still says that it begins.
QMatrix4x4 startRotation(const KIImageDef &still)
{
    constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180;
    const auto yaw = float(still.getYaw() * kRadiansPerDegree);
    const auto pitch = float(still.getPitch() * kRadiansPerDegree);
    return CameraMath::matrixFromAngles({yaw, 0, 0}) * CameraMath::matrixFromAngles({0, pitch, 0});
}

} // namespace

void KGlobalObject::setMediaLoader(QObject *loader)
{
    m_mediaLoader = loader;
}

QObject *KGlobalObject::mediaPlayer() const
{
    return m_mediaLoader ? m_mediaLoader->property("mediaPlayer").value<QObject *>() : nullptr;
}

QVariantMap KGlobalObject::currentMetadata() const
{
    const QObject *player = mediaPlayer();
    return player ? player->property("fileMetadata").toMap() : QVariantMap();
}

void KGlobalObject::invokeLoader(const char *method, const QVariantList &arguments)
{
    if (!m_mediaLoader)
        return;
    const auto argument = [&arguments](int i) {
        return i < arguments.size() ? Q_ARG(QVariant, arguments.at(i)) : QGenericArgument();
    };
    QMetaObject::invokeMethod(m_mediaLoader, method, argument(0), argument(1), argument(2),
                              argument(3));
}

void KGlobalObject::processFileSource(const QVariant &source, const QString &error,
                                      bool dragAndDrop)
{
    constexpr bool kKeepPlaylist = false;
    invokeLoader("processFileSource", {source, kKeepPlaylist, error, dragAndDrop});
}

void KGlobalObject::openFile(const QString &url, bool dragAndDrop)
{
    openFiles(QStringList{url}, dragAndDrop);
}

void KGlobalObject::openFiles(const QStringList &files, bool dragAndDrop)
{
    QList<QUrl> urls;
    for (const QString &file : files)
        urls.append(MediaChoice::urlFromText(file));
    openFiles(urls, dragAndDrop);
}

void KGlobalObject::openFiles(const QList<QUrl> &urls, bool dragAndDrop)
{
    PlayListContents contents;
    contents.media = urls;
    if (urls.size() == 1) {
        const QString path = urls.first().toLocalFile();
        if (QFileInfo(path).suffix().toLower() == QLatin1String("orpl"))
            contents = PlayListReader::readFile(path);
        else if (!path.isEmpty() && QFileInfo(path).isDir())
            contents = PlayListReader::readDirectory(path);
    }

    clearPlayList();
    m_logoMap = contents.logos;
    m_thumbMap = contents.thumbs;
    m_stereoMap = contents.stereoTexts;
    if (!contents.error.isEmpty()) {
        processFileSource(QString(), contents.error, false);
        return;
    }
    if (contents.media.size() > 1) {
        m_playList = contents.media;
        setPlayListIndex(0, dragAndDrop);
    } else if (contents.media.size() == 1) {
        processFileSource(contents.media.first(), QString(), dragAndDrop);
    }
    emit playListChanged();
    emit opened(urls);
}

void KGlobalObject::clearPlayList()
{
    m_imageTimer.stop();
    m_playList.clear();
    m_logoMap.clear();
    m_thumbMap.clear();
    m_stereoMap.clear();
    if (m_playListIndex != -1) {
        m_playListIndex = -1;
        emit playListIndexChanged();
    }
}

void KGlobalObject::setPlayListIndex(int index, bool dragAndDrop)
{
    if (index == m_playListIndex)
        return;
    m_imageTimer.stop();
    m_playListIndex = index;
    if (index >= 0 && index < m_playList.size())
        processFileSource(m_playList.at(index), QString(), dragAndDrop);
    emit playListIndexChanged();
}

void KGlobalObject::playListSetNext(bool forceNext)
{
    const int count = m_playList.size();
    if (count == 0)
        return;
    const int following = (m_playListIndex + 1) % count;
    if (forceNext) {
        setPlayListIndex(following);
        return;
    }
    if (m_loopMode < NoLoop || m_loopMode > LoopMedium)
        qCWarning(playlistLog) << "Wrong loop mode value" << m_loopMode;
    if (m_loopMode == NoLoop) {
        if (m_playListIndex + 1 < count)
            setPlayListIndex(m_playListIndex + 1);
        else
            emit endOfPlaylistReached();
    } else if (m_loopMode == LoopList) {
        setPlayListIndex(following);
    } else {
        processFileSource(m_playList.value(m_playListIndex), QString(), false);
    }
}

void KGlobalObject::playListSetPrevious()
{
    if (m_playList.isEmpty())
        return;
    setPlayListIndex(m_playListIndex > 0 ? m_playListIndex - 1 : m_playList.size() - 1);
}

QStringList KGlobalObject::getPlayListNames() const
{
    QStringList names;
    for (const QUrl &medium : m_playList)
        names.append(medium.fileName());
    return names;
}

QUrl KGlobalObject::getDynamicLogo(const QUrl &medium) const
{
    return m_logoMap.value(medium);
}

QUrl KGlobalObject::getThumb(const QUrl &medium) const
{
    const auto found = m_thumbMap.constFind(medium);
    if (found != m_thumbMap.constEnd())
        return *found;
    const QFileInfo file(medium.toLocalFile());
    if (file.fileName().isEmpty())
        return {};
    const QString thumb =
        file.path() + QLatin1Char('/') + file.completeBaseName() + QLatin1String(".png");
    return QFileInfo::exists(thumb) ? QUrl::fromLocalFile(thumb) : QUrl();
}

QString KGlobalObject::getStereoConfig(const QUrl &medium) const
{
    return m_stereoMap.value(medium);
}

bool KGlobalObject::isImageFile(const QUrl &url) const
{
    return ImageFormats::isPictureSuffix(MediaChoice::suffix(url));
}

int KGlobalObject::isVideoFile(const QUrl &url) const
{
    const QString suffix = MediaChoice::suffix(url);
    if (getSupportedVideoFormats().contains(suffix))
        return Video;
    return suffix == QLatin1String("yuv") ? RawVideo : NoVideo;
}

QStringList KGlobalObject::getSupportedImageFormats() const
{
    return ImageFormats::pictureSuffixes();
}

QStringList KGlobalObject::getSupportedVideoFormats() const
{
    QStringList suffixes = MediaChoice::videoSuffixes();
    // Raw video says nothing of its size; only arguments for libvlc can.
    if (VlcConfig::current().customMode)
        suffixes.append(QStringLiteral("yuv"));
    return suffixes;
}

bool KGlobalObject::isValidFilePath(const QUrl &) const
{
    return true;
}

bool KGlobalObject::isFile(const QUrl &url) const
{
    return url.scheme() == QLatin1String("file");
}

QUrl KGlobalObject::checkFilePath(const QUrl &url) const
{
    QUrl checked = url;
    if (checked.scheme() == QLatin1String("qrc"))
        checked.setScheme(QStringLiteral("file"));
    return checked;
}

void KGlobalObject::resolveStereoMode(const QVariantMap &metadata)
{
    KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!builder)
        return;
    const int wanted = setting("instance/input/stereoscopy").toInt();
    if (wanted != KShaderCodeBuilder::STEREO_AUTO) {
        builder->setStereoMode(wanted);
        return;
    }
    QString text;
    if (!playListIsEmpty())
        text = getStereoConfig(m_playList.value(m_playListIndex));
    if (const auto mode = MediaChoice::stereoMode(text, metadata))
        builder->setStereoMode(*mode);
}

void KGlobalObject::resolveProjection(const QVariantMap &metadata)
{
    KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!builder)
        return;
    const int wanted = setting("instance/input/projection").toInt();
    builder->setProjectionSource(
        wanted == KShaderCodeBuilder::AUTO ? MediaChoice::inputProjection(metadata) : wanted);
}

QVariantMap KGlobalObject::readMetaData(const QVariant &url)
{
    QVariantMap metadata;
    QMatrix4x4 baseRotation;
    const QUrl location = url.toUrl();
    if (location.isLocalFile() && isImageFile(location)) {
        m_application->stillOptions()->refresh();
        baseRotation = startRotation(
            ImageDef(location.toLocalFile(), m_application->stillOptions()->options()));
    } else if (location.isLocalFile() && isVideoFile(location) == Video) {
        metadata = readMovieMetadata(location.toLocalFile());
    }

    setOffsetMatrix(baseRotation);
    setYawMin(-CameraMath::kPi);
    setYawMax(CameraMath::kPi);
    setPitchMin(-CameraMath::kPi / 2);
    setPitchMax(CameraMath::kPi / 2);

    // The limits of the field of view and the reset depend on the projection found just before.
    buildKeyPoints(url);
    resolveStereoMode(metadata);
    resolveProjection(metadata);
    resetYawPitchRollFov(metadata);
    return metadata;
}

QString KGlobalObject::logMetaData(const QVariant &url, const QVariantMap &metadata)
{
    m_videoLogMessage = MediaChoice::report(url, metadata);
    emit videoLogMessageChanged();
    return m_videoLogMessage;
}

void KGlobalObject::imageTimeoutSetNext()
{
    if (!playListIsEmpty())
        playListSetNext(false);
    else
        invokeLoader(m_loopMode < LoopList ? "stop" : "play");
}

void KGlobalObject::startTimerNextImage()
{
    if (!m_imageDisplayDurationNone)
        m_imageTimer.start(m_imageDisplayDuration);
}

void KGlobalObject::pauseTimerNextImage()
{
    if (!m_imageTimer.isActive())
        return;
    m_imageTimerRemaining = m_imageTimer.remainingTime();
    m_imageTimer.stop();
}

void KGlobalObject::resumeTimerNextImage()
{
    if (m_imageDisplayDurationNone)
        return; // nor was there a timer to pause
    m_imageTimerRemaining = qMax(m_imageTimerRemaining, kResumedStillMs);
    m_imageTimer.start(m_imageTimerRemaining);
}

void KGlobalObject::hideCursor()
{
    QGuiApplication::setOverrideCursor(Qt::BlankCursor);
}

void KGlobalObject::restoreCursor()
{
    QGuiApplication::restoreOverrideCursor();
}

QString KGlobalObject::platformOS() const
{
#if defined(Q_OS_WIN64)
    return QStringLiteral("Q_OS_WIN64");
#elif defined(Q_OS_WIN32)
    return QStringLiteral("Q_OS_WIN32");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("Q_OS_MAC");
#else
    return QStringLiteral("Q_OS_LINUX");
#endif
}

void KGlobalObject::restart()
{
    invokeLoader("destroyVideoPlayer");
    QCoreApplication::exit(Application::kRestartStatus);
}

void KGlobalObject::quit()
{
    invokeLoader("destroyVideoPlayer");
    QCoreApplication::exit(0);
}

void KGlobalObject::hackQmlMediaPlayer(QObject *player)
{
    if (!player || player->property("backend").toString() == QLatin1String("vlc"))
        return;
    QObject *object = player;
    for (const char *step : {"item", "qtMediaPlayer", "mediaObject"}) {
        object = object->property(step).value<QObject *>();
        if (!object)
            return;
    }
    object->setProperty("notifyInterval", kNotifyIntervalMs);
}
