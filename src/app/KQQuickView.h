#pragma once

// The program's one top-level window: hosts the scene, reports frame rate and graphics card, keeps
// the title and toggles full screen. Owned by Application, GUI thread; the scene graph calls
// computeGpuInfo() and computeFps() on its render thread, whose results are queued back here.

#include <QDate>
#include <QQuickView>
#include <QSize>

#include <memory>

class CrashHandler;
class KSettingsManager;
class KUpdateManager;

class KQQuickView : public QQuickView
{
    Q_OBJECT
    Q_PROPERTY(bool fullScreen READ fullScreen NOTIFY fullScreenChanged)
    Q_PROPERTY(QSize maxTextureSize READ maxTextureSize NOTIFY maxTextureSizeChanged)
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)
    Q_PROPERTY(QString gpuInfo READ gpuInfo NOTIFY gpuInfoChanged)
    Q_PROPERTY(bool checkUpdatePossible READ checkUpdatePossible CONSTANT)

public:
    /// @p touchTable: a table starts full screen. @p updateServer may be empty, @p store keeps when
    /// it was last asked. @p crashHandler may be null; both outlive the view.
    KQQuickView(bool touchTable, const QString &updateServer, KSettingsManager *store,
                CrashHandler *crashHandler, QWindow *parent = nullptr);
    ~KQQuickView() override;

    bool fullScreen() const { return m_fullScreen; }
    /// Pixels; (-1, -1) before the first frame.
    QSize maxTextureSize() const { return m_maxTextureSize; }
    /// Frames drawn in the last whole second.
    int fps() const { return m_fps; }
    QString gpuInfo() const { return m_gpuInfo; }
    /// Whether there is a server that knows of newer versions.
    bool checkUpdatePossible() const;

    /// The scheduled check, once the window is there. @p productId is the server's word for us.
    void startUpdates(const QString &productId);

    Q_INVOKABLE void fullScreenMode(bool enabled);
    Q_INVOKABLE QString version() const;
    /// Name and version for people. Hides QWindow::title(), the text in the window's frame.
    Q_INVOKABLE QString title() const;
    /// @p newSource: address of the medium now shown, empty for none; percent-encoding is undone.
    Q_INVOKABLE void updateTitle(const QString &newSource);
    Q_INVOKABLE bool isNewVersionAvailable() const;
    /// The user's own check.
    Q_INVOKABLE void checkUpdate();
    Q_INVOKABLE QString newVersion() const;
    Q_INVOKABLE QDate newVersionDate() const;
    /// Rich text that loads nothing.
    Q_INVOKABLE QString newChangeLog() const;
    Q_INVOKABLE QString urlDownload() const;
    Q_INVOKABLE QString urlHistory() const;
    Q_INVOKABLE QString urlWebsite() const;
    /// Opens the crash reporter without a dump.
    Q_INVOKABLE void displayCrashManager();
    /// The product's colour.
    Q_INVOKABLE QColor colorTeam() const;

public slots:
    void OnNewVersionAvailable();
    void OnAlreadyLatestVersion();

signals:
    void fullScreenChanged();
    void maxTextureSizeChanged();
    void fpsChanged();
    void gpuInfoChanged();
    void signalNativeEvent(QByteArray eventType, void *message, long *result);
    void displayPopup(QString qmlFile);
    void displayMessage(QString message);
    void mouseMoved(int x, int y);

protected:
    bool nativeEvent(const QByteArray &eventType, void *message, long *result) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private slots:
    void onWindowStateChanged(Qt::WindowState state);
    void computeGpuInfo();
    void computeFps();

private:
    const std::unique_ptr<KUpdateManager> m_updateManager;
    CrashHandler *const m_crashHandler;
    bool m_fullScreen;
    QSize m_maxTextureSize{-1, -1};
    int m_fps = 0;
    QString m_gpuInfo;
    // Of the render thread.
    int m_frameCounter = 0;
    qint64 m_lastFpsSecond = 0;
};
