#include "video/KVlcPlayerQml.h"

#include "video/FormatChoice.h"
#include "video/VlcConfig.h"
#include "video/VlcInstance.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>

namespace {

// What libvlc offers and we replace is part of every H.264 file: said only to those who ask.
Q_LOGGING_CATEGORY(video, "orbilens.video", QtWarningMsg)

constexpr libvlc_event_type_t kPlayerEvents[] = {
    libvlc_MediaPlayerTimeChanged, libvlc_MediaPlayerEncounteredError, libvlc_MediaPlayerStopped};
constexpr libvlc_event_type_t kMediaEvents[] = {libvlc_MediaStateChanged,
                                                libvlc_MediaParsedChanged};
constexpr qint64 kMicrosecondsPerMillisecond = 1000;

void parseNow(libvlc_media_t *media)
{
    // The successor of this call only answers by an event, and the picture's size is needed at
    // once.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    libvlc_media_parse(media);
#pragma GCC diagnostic pop
}

bool isStitched(const QVariantMap &metadata)
{
    return metadata.value(QStringLiteral("Writing Tool"))
        .toString()
        .contains(QLatin1String("Stitchwerk"));
}

} // namespace

KVlcPlayerQml::KVlcPlayerQml(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setMipmap(false);
    setRenderTarget(InvertedYFramebufferObject);
}

KVlcPlayerQml::~KVlcPlayerQml()
{
    desinitVlcMediaInstance();
    desinitVlcPlayerInstance();
    if (m_fakeSurface)
        m_fakeSurface->deleteLater();
    if (m_spareSurface)
        m_spareSurface->deleteLater();
}

// ---------------------------------------------------------------------------------------------
// What the scene asks for

void KVlcPlayerQml::openFile(const QUrl &url)
{
    if (url.isEmpty())
        return;
    if (!m_mediaPlayer)
        initVlcPlayerInstance();
    m_source = url;
    m_startupCounter = 1;
    setTextureId(0);
    desinitVlcMediaInstance();
    m_state = Idle;
    {
        QMutexLocker lock(&m_tracksMutex);
        m_tracks = {};
    }
    m_shaderColorConversion = VlcConfig::current().shaderColorConversion;
    initVlcMediaInstance();
    if (m_media) {
        {
            // The old media's threads end in here.
            const VideoSurfaceGate::Closed closed(m_gate);
            libvlc_media_player_set_media(m_mediaPlayer.get(), m_media.get());
        }
        m_hasPlayed = false;
        // A last picture of the old media may have come until then.
        m_startupCounter = 1;
        if (m_textureId != 0)
            setTextureId(0);
        libvlc_media_player_play(m_mediaPlayer.get());
        if (VlcConfig::current().audioDelay != 0)
            updateAudioDelay();
    }
    emit volumeChanged();
    emit sourceChanged();
}

void KVlcPlayerQml::pause()
{
    if (m_mediaPlayer)
        libvlc_media_player_set_pause(m_mediaPlayer.get(), 1);
}

void KVlcPlayerQml::play()
{
    if (m_mediaPlayer)
        libvlc_media_player_play(m_mediaPlayer.get());
}

void KVlcPlayerQml::stop()
{
    if (!m_mediaPlayer)
        return;
    const VideoSurfaceGate::Closed closed(m_gate);
    libvlc_media_player_stop(m_mediaPlayer.get());
}

void KVlcPlayerQml::restart()
{
    const QUrl url = m_source;
    if (url.isEmpty())
        return;
    desinitVlcMediaInstance();
    openFile(url);
}

void KVlcPlayerQml::seek(int offset)
{
    if (!m_mediaPlayer)
        return;
    libvlc_media_player_set_time(m_mediaPlayer.get(), offset);
    // No time event comes while paused.
    if (!libvlc_media_player_is_playing(m_mediaPlayer.get()))
        emit positionChanged(offset);
}

void KVlcPlayerQml::updateAudioDelay()
{
    if (m_mediaPlayer)
        libvlc_audio_set_delay(m_mediaPlayer.get(),
                               VlcConfig::current().audioDelay * kMicrosecondsPerMillisecond);
}

float KVlcPlayerQml::volume() const
{
    return m_mediaPlayer ? float(libvlc_audio_get_volume(m_mediaPlayer.get()) / 100.0) : 0.0F;
}

void KVlcPlayerQml::setVolume(float volume)
{
    m_volumePercent = int(volume * 100);
    if (m_mediaPlayer)
        libvlc_audio_set_volume(m_mediaPlayer.get(), *m_volumePercent);
    emit volumeChanged();
}

void KVlcPlayerQml::setYaw(float yaw)
{
    if (m_yaw == yaw)
        return;
    m_yaw = yaw;
    emit yawChanged();
}

void KVlcPlayerQml::setPitch(float pitch)
{
    if (m_pitch == pitch)
        return;
    m_pitch = pitch;
    emit pitchChanged();
}

void KVlcPlayerQml::setRoll(float roll)
{
    if (m_roll == roll)
        return;
    m_roll = roll;
    emit rollChanged();
}

void KVlcPlayerQml::setTextureId(int textureId)
{
    m_textureId = textureId;
    emit textureIdChanged();
}

void KVlcPlayerQml::setPaintTexture(bool paint)
{
    if (m_paintTexture == paint)
        return;
    m_paintTexture = paint;
    update();
    emit paintTextureChanged();
}

void KVlcPlayerQml::setFileMetadata(const QVariantMap &metadata)
{
    if (m_fileMetadata == metadata)
        return;
    m_fileMetadata = metadata;
    m_stitched = isStitched(metadata);
    emit fileMetadataChanged();
}

QString KVlcPlayerQml::textureTransfer() const
{
    return m_pipeline.transferName() + QLatin1Char('\n');
}

QString KVlcPlayerQml::texturePixelFormat() const
{
    return pixelFormatName(m_pipeline.shownFormat());
}

// ---------------------------------------------------------------------------------------------
// libvlc's objects, on the GUI thread

void KVlcPlayerQml::initVlcPlayerInstance()
{
    libvlc_instance_t *instance = vlcInstance();
    if (instance)
        m_mediaPlayer.reset(libvlc_media_player_new(instance));
    if (!m_mediaPlayer) {
        qCWarning(video, "ERROR : cannot init VLC player instance.");
        return;
    }
    libvlc_event_manager_t *events = libvlc_media_player_event_manager(m_mediaPlayer.get());
    for (const auto type : kPlayerEvents)
        libvlc_event_attach(events, type, onEvent, this);
    libvlc_video_set_callbacks(m_mediaPlayer.get(), onLock, onUnlock, onDisplay, this);
    libvlc_video_set_format_callbacks(m_mediaPlayer.get(), onFormat, onCleanup);
    if (m_volumePercent)
        libvlc_audio_set_volume(m_mediaPlayer.get(), *m_volumePercent);
}

void KVlcPlayerQml::initVlcMediaInstance()
{
    if (!m_mediaPlayer)
        return;
    m_media.reset(
        libvlc_media_new_location(vlcInstance(), m_source.toString().toUtf8().constData()));
    if (!m_media) {
        qCWarning(video, "ERROR : cannot init VLC media instance.");
        return;
    }
    libvlc_event_manager_t *events = libvlc_media_event_manager(m_media.get());
    for (const auto type : kMediaEvents)
        libvlc_event_attach(events, type, onEvent, this);
    for (const QString &option : vlcMediaOptions(VlcConfig::current()))
        libvlc_media_add_option(m_media.get(), option.toLatin1().constData());
}

void KVlcPlayerQml::desinitVlcMediaInstance()
{
    if (!m_media)
        return;
    // Detaching waits for an event that is being handled, so it comes before the release.
    libvlc_event_manager_t *events = libvlc_media_event_manager(m_media.get());
    for (const auto type : kMediaEvents)
        libvlc_event_detach(events, type, onEvent, this);
    m_media.reset();
}

void KVlcPlayerQml::desinitVlcPlayerInstance()
{
    if (!m_mediaPlayer)
        return;
    stop();
    libvlc_event_manager_t *events = libvlc_media_player_event_manager(m_mediaPlayer.get());
    for (const auto type : kPlayerEvents)
        libvlc_event_detach(events, type, onEvent, this);
    m_mediaPlayer.reset();
}

// ---------------------------------------------------------------------------------------------
// The scene graph

QSGNode *KVlcPlayerQml::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data)
{
    if (m_shareContext) {
        // What never paints needs no picture of its size.
        return oldNode || m_paintTexture ? QQuickPaintedItem::updatePaintNode(oldNode, data)
                                         : nullptr;
    }
    QOpenGLContext *current = QOpenGLContext::currentContext();
    auto share = std::make_unique<QOpenGLContext>();
    share->setShareContext(current);
    if (current)
        share->setFormat(current->format());
    if (!current || !share->create())
        return oldNode;
    m_shareContext = std::move(share);
    QMetaObject::invokeMethod(this, "initFakeSurfaces", Qt::QueuedConnection);
    emit textureTransferChanged();
    return oldNode;
}

void KVlcPlayerQml::initFakeSurfaces()
{
    for (QOffscreenSurface **surface : {&m_fakeSurface, &m_spareSurface}) {
        *surface = new QOffscreenSurface;
        (*surface)->setFormat(m_shareContext->format());
        (*surface)->create();
    }
    if (window())
        m_windowId = window()->winId();
    m_gate.open({m_fakeSurface, m_shareContext.get()});
}

void KVlcPlayerQml::resizeToFrame()
{
    if (m_frameSize.width() > 0 && m_frameSize.height() > 0)
        setSize(m_frameSize);
}

void KVlcPlayerQml::paint(QPainter *painter)
{
    const int texture = m_textureId;
    if (!m_paintTexture || texture == 0)
        return;
    painter->beginNativePainting();
    if (!m_blit)
        m_blit = std::make_unique<SwizzleBlit>(SwizzleBlit::RowOrder::Upright);
    m_blit->draw(GLuint(texture));
    painter->endNativePainting();
}

// ---------------------------------------------------------------------------------------------
// libvlc's video thread

unsigned KVlcPlayerQml::setupFormat(char *chroma, unsigned *width, unsigned *height,
                                    unsigned *pitches, unsigned *lines)
{
    const VideoSurfaceGate::Anchor anchor = m_gate.wait();
    if (!anchor.surface)
        return 0;

    const QByteArray proposed(chroma, 4);
    VlcFramePipeline::Request request;
    ChromaAnswer answer = ChromaAnswer::Kept;
    request.format = acceptChroma(chroma, &answer);
    if (answer == ChromaAnswer::Replaced)
        qCInfo(video, "UNKNOWN PIXEL FORMAT: %s > falling back to BGRA", proposed.constData());

    if (tracks().videoSize.isEmpty()) {
        const VlcMediaHandle media(libvlc_media_player_get_media(m_mediaPlayer.get()));
        if (media)
            parseTracks(media.get(), Parse::First);
    }
    const Tracks known = tracks();
    request.size = chooseFrameSize(QSize(int(*width), int(*height)), known.videoSize);
    if (known.videoSize.isEmpty()) {
        QMutexLocker lock(&m_tracksMutex);
        m_tracks.videoSize = request.size;
    }
    request.fullRange = isFullRangeCodec(known.videoCodec);
    request.stitched = m_stitched;
    request.shaderColorConversion = m_shaderColorConversion;
    request.window = m_windowId;

    const auto announced = m_pipeline.begin(anchor, request);
    if (!announced)
        return 0;
    if (announced->format == VlcPixelFormat::Bgra)
        std::copy_n("BGRA", 4, chroma); // without a terminator
    *width = unsigned(request.size.width());
    *height = unsigned(request.size.height());
    for (std::size_t i = 0; i < announced->pitches.size(); ++i) {
        pitches[i] = announced->pitches[i];
        lines[i] = announced->lines[i];
    }
    return 1;
}

unsigned KVlcPlayerQml::onFormat(void **opaque, char *chroma, unsigned *width, unsigned *height,
                                 unsigned *pitches, unsigned *lines)
{
    return static_cast<KVlcPlayerQml *>(*opaque)->setupFormat(chroma, width, height, pitches,
                                                              lines);
}

void KVlcPlayerQml::onCleanup(void *opaque)
{
    auto *self = static_cast<KVlcPlayerQml *>(opaque);
    self->setTextureId(0);
    self->m_pipeline.end();
}

void *KVlcPlayerQml::onLock(void *opaque, void **planes)
{
    auto *self = static_cast<KVlcPlayerQml *>(opaque);
    if (self->m_pipeline.lock(planes) == VlcFramePipeline::Locked::FirstFrame) {
        self->publishFrameSize(self->m_pipeline.frameSize());
        emit self->texturePixelFormatChanged();
        emit self->textureTransferChanged();
    }
    return nullptr;
}

void KVlcPlayerQml::onUnlock(void *opaque, void *, void *const *)
{
    auto *self = static_cast<KVlcPlayerQml *>(opaque);
    self->updateTexture();
    self->computeFps();
}

void KVlcPlayerQml::onDisplay(void *, void *) {}

void KVlcPlayerQml::publishFrameSize(QSize size)
{
    QMetaObject::invokeMethod(
        this,
        [this, size] {
            m_frameSize = size;
            emit frameSizeChanged();
        },
        Qt::QueuedConnection);
    if (m_nativeSize)
        QMetaObject::invokeMethod(this, "resizeToFrame", Qt::QueuedConnection);
}

void KVlcPlayerQml::updateTexture()
{
    const auto name = m_pipeline.unlock();
    if (!name)
        return;
    m_hasPlayed = true;
    // The first picture of a media is withheld: the view keeps what it had until the second.
    if (m_startupCounter <= 1) {
        ++m_startupCounter;
        return;
    }
    setTextureId(int(*name));
    if (m_paintTexture)
        QMetaObject::invokeMethod(
            this, [this] { update(); }, Qt::QueuedConnection);
}

void KVlcPlayerQml::computeFps()
{
    if (!m_fpsCounter.frame(QDateTime::currentMSecsSinceEpoch()))
        return;
    m_fps = m_fpsCounter.framesPerSecond();
    emit fpsChanged();
}

// ---------------------------------------------------------------------------------------------
// The media's tracks and events, on libvlc's threads

KVlcPlayerQml::Tracks KVlcPlayerQml::tracks() const
{
    QMutexLocker lock(&m_tracksMutex);
    return m_tracks;
}

void KVlcPlayerQml::parseTracks(libvlc_media_t *media, Parse parse)
{
    if (parse == Parse::First)
        parseNow(media);
    emit durationChanged(int(libvlc_media_get_duration(media)));

    libvlc_media_track_t **list = nullptr;
    const unsigned count = libvlc_media_tracks_get(media, &list);
    bool hasVideo = false;
    {
        QMutexLocker lock(&m_tracksMutex);
        for (unsigned i = 0; i < count; ++i) {
            const libvlc_media_track_t &track = *list[i];
            if (track.i_type == libvlc_track_audio) {
                m_tracks.audioChannels = track.audio->i_channels;
                m_tracks.audioRate = track.audio->i_rate;
            } else if (track.i_type == libvlc_track_video) {
                hasVideo = true;
                m_tracks.videoCodec = track.i_codec;
                m_tracks.videoSize = QSize(int(track.video->i_width), int(track.video->i_height));
            }
        }
    }
    if (count > 0)
        libvlc_media_tracks_release(list, count);
    if (!hasVideo)
        qCInfo(video, "WARNING in KVlcPlayerQml::parseTracks() : no video track found.");
}

void KVlcPlayerQml::onEvent(const libvlc_event_t *event, void *opaque)
{
    static_cast<KVlcPlayerQml *>(opaque)->handleEvent(*event);
}

void KVlcPlayerQml::handleEvent(const libvlc_event_t &event)
{
    switch (event.type) {
    case libvlc_MediaPlayerTimeChanged:
        m_hasPlayed = true;
        emit positionChanged(int(event.u.media_player_time_changed.new_time));
        break;
    case libvlc_MediaPlayerEncounteredError:
        announceFault(QString::fromUtf8(libvlc_errmsg()));
        break;
    case libvlc_MediaParsedChanged:
        // Parsing inside this event would wait for the event's own end.
        parseTracks(static_cast<libvlc_media_t *>(event.p_obj), Parse::No);
        break;
    case libvlc_MediaStateChanged:
        changeState(event.u.media_state_changed.new_state);
        break;
    default:
        break;
    }
}

void KVlcPlayerQml::changeState(int state)
{
    if (state == Ended && m_state == Error)
        return; // libvlc ends a media that failed as well: played again, it would fail for ever
    // A file of rubbish ends at once without an error of libvlc's.
    if (state == Ended && m_state != Ended && !m_hasPlayed) {
        announceFault(tr("This medium holds nothing that can be played."));
        state = Error;
    }
    // libvlc announces the end twice; once is what the scene may act on.
    if (m_state.exchange(state) != state)
        emit vlcStateChanged(state);
}

void KVlcPlayerQml::announceFault(const QString &fault)
{
    emit errorStringChanged(fault.isEmpty() ? QStringLiteral("Unknown Error") : fault);
}
