#pragma once

// Plays one media through libvlc and publishes the texture of its pictures ("VlcVideoPlayer" in
// the scene). Owned by the scene. Threads that enter: the GUI thread (all that the scene calls),
// the scene graph's render thread (updatePaintNode, paint), libvlc's event thread and libvlc's
// video thread. What they share is atomic, behind m_tracksMutex, or inside the gate.

#include "video/FpsCounter.h"
#include "video/SwizzleBlit.h"
#include "video/VideoSurfaceGate.h"
#include "video/VlcFramePipeline.h"
#include "video/VlcHandles.h"

#include <QMutex>
#include <QQuickPaintedItem>
#include <QUrl>
#include <QVariantMap>

#include <atomic>
#include <memory>
#include <optional>

struct libvlc_event_t;

class KVlcPlayerQml : public QQuickPaintedItem
{
    Q_OBJECT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    // 0 to 1.
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    // Resize the item to the picture.
    Q_PROPERTY(bool nativeSize READ nativeSize WRITE setNativeSize)
    // Told to whoever computes sound from the view; no effect on playback here.
    Q_PROPERTY(float yaw READ yaw WRITE setYaw NOTIFY yawChanged)
    Q_PROPERTY(float pitch READ pitch WRITE setPitch NOTIFY pitchChanged)
    Q_PROPERTY(float roll READ roll WRITE setRoll NOTIFY rollChanged)
    // GL name in the scene graph's share group, 0 while there is no picture.
    Q_PROPERTY(int textureId READ textureId WRITE setTextureId NOTIFY textureIdChanged)
    // The item draws the picture itself.
    Q_PROPERTY(bool paintTexture READ paintTexture WRITE setPaintTexture NOTIFY paintTextureChanged)
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)
    Q_PROPERTY(QString textureTransfer READ textureTransfer NOTIFY textureTransferChanged)
    Q_PROPERTY(QString texturePixelFormat READ texturePixelFormat NOTIFY texturePixelFormatChanged)
    Q_PROPERTY(
        QVariantMap fileMetadata READ fileMetadata WRITE setFileMetadata NOTIFY fileMetadataChanged)
    // Pixels of the picture behind textureId; empty before the first one.
    Q_PROPERTY(QSize frameSize READ frameSize NOTIFY frameSizeChanged)

public:
    /// Equals libvlc_state_t.
    enum VlcState { Idle, Opening, Buffering, Playing, Paused, Stopped, Ended, Error };
    Q_ENUM(VlcState)

    explicit KVlcPlayerQml(QQuickItem *parent = nullptr);
    ~KVlcPlayerQml() override;

    /// An empty url changes nothing.
    Q_INVOKABLE void openFile(const QUrl &url);
    Q_INVOKABLE void pause();
    Q_INVOKABLE void play();
    /// Opens the source again; nothing without one.
    Q_INVOKABLE void restart();
    Q_INVOKABLE void stop();
    /// Milliseconds from the start.
    Q_INVOKABLE void seek(int offset);
    /// Takes over the delay of the settings.
    Q_INVOKABLE void updateAudioDelay();

    QUrl source() const { return m_source; }
    void setSource(const QUrl &source) { openFile(source); }
    float volume() const;
    void setVolume(float volume);
    bool nativeSize() const { return m_nativeSize; }
    void setNativeSize(bool nativeSize) { m_nativeSize = nativeSize; }
    float yaw() const { return m_yaw; }
    void setYaw(float yaw);
    float pitch() const { return m_pitch; }
    void setPitch(float pitch);
    float roll() const { return m_roll; }
    void setRoll(float roll);
    int textureId() const { return m_textureId; }
    void setTextureId(int textureId);
    bool paintTexture() const { return m_paintTexture; }
    void setPaintTexture(bool paint);
    int fps() const { return m_fps; }
    QString textureTransfer() const;
    QString texturePixelFormat() const;
    QVariantMap fileMetadata() const { return m_fileMetadata; }
    void setFileMetadata(const QVariantMap &metadata);
    QSize frameSize() const { return m_frameSize; }

    void paint(QPainter *painter) override;

signals:
    /// Milliseconds, here and in positionChanged.
    void durationChanged(int duration);
    void errorStringChanged(QString errorString);
    void positionChanged(int position);
    void vlcStateChanged(int vlcState);
    void sourceChanged();
    void volumeChanged();
    void yawChanged();
    void pitchChanged();
    void rollChanged();
    void textureIdChanged();
    void paintTextureChanged();
    void fpsChanged();
    void textureTransferChanged();
    void texturePixelFormatChanged();
    void fileMetadataChanged();
    void frameSizeChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private slots:
    void resizeToFrame();
    void computeFps();
    void initFakeSurfaces();
    void initVlcPlayerInstance();
    void initVlcMediaInstance();
    void desinitVlcPlayerInstance();
    void desinitVlcMediaInstance();
    void updateTexture();

private:
    /// What the media's tracks say; the last track of a kind wins.
    struct Tracks
    {
        unsigned audioChannels = 0;
        unsigned audioRate = 0;
        unsigned videoCodec = 0;
        QSize videoSize;
    };
    enum class Parse { No, First };

    void publishFrameSize(QSize size);
    void parseTracks(libvlc_media_t *media, Parse parse);
    Tracks tracks() const;
    unsigned setupFormat(char *chroma, unsigned *width, unsigned *height, unsigned *pitches,
                         unsigned *lines);
    void handleEvent(const libvlc_event_t &event);
    void changeState(int state);
    void announceFault(const QString &fault);

    static void *onLock(void *opaque, void **planes);
    static void onUnlock(void *opaque, void *picture, void *const *planes);
    static void onDisplay(void *opaque, void *picture);
    static unsigned onFormat(void **opaque, char *chroma, unsigned *width, unsigned *height,
                             unsigned *pitches, unsigned *lines);
    static void onCleanup(void *opaque);
    static void onEvent(const libvlc_event_t *event, void *opaque);

    // Read by several threads.
    std::atomic<int> m_textureId{0};
    std::atomic<int> m_fps{0};
    std::atomic<int> m_startupCounter{1}; ///< 1 after openFile: the first picture is withheld
    std::atomic<int> m_state{Idle};       ///< announced last for this media
    std::atomic<bool> m_hasPlayed{false}; ///< a picture came, or time went by
    std::atomic<bool> m_nativeSize{false};
    std::atomic<bool> m_paintTexture{false};
    std::atomic<bool> m_stitched{false}; ///< what fileMetadata says of the writing program
    std::atomic<bool> m_shaderColorConversion{true};
    std::atomic<WId> m_windowId{0};
    mutable QMutex m_tracksMutex;
    Tracks m_tracks;
    VideoSurfaceGate m_gate;

    // GUI thread.
    QUrl m_source;
    float m_yaw = 0;
    float m_pitch = 0;
    float m_roll = 0;
    QVariantMap m_fileMetadata;
    QSize m_frameSize{0, 0};
    std::optional<int> m_volumePercent;         ///< what the scene has set
    QOffscreenSurface *m_fakeSurface = nullptr; ///< deleted later, as surfaces want
    QOffscreenSurface *m_spareSurface = nullptr;

    // Render thread.
    std::unique_ptr<QOpenGLContext> m_shareContext; ///< never current: anchors the share group
    std::unique_ptr<SwizzleBlit> m_blit;

    // libvlc's video thread.
    FpsCounter m_fpsCounter;
    VlcFramePipeline m_pipeline;

    // Made when there is first something to play: a start with a still, or with nothing, need not
    // wait for libvlc and its plug-ins. The media lives shorter than the player.
    VlcPlayerHandle m_mediaPlayer;
    VlcMediaHandle m_media;
};
