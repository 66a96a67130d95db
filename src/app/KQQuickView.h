#pragma once

// The program's one top-level window: hosts the scene, reports frame rate and graphics card, keeps
// the title and toggles full screen. Owned by Application, GUI thread; the scene graph calls
// computeGpuInfo() and computeFps() on its render thread, whose results are queued back here.

#include <QQuickView>
#include <QSize>

class KQQuickView : public QQuickView
{
    Q_OBJECT
    Q_PROPERTY(bool fullScreen READ fullScreen NOTIFY fullScreenChanged)
    Q_PROPERTY(QSize maxTextureSize READ maxTextureSize NOTIFY maxTextureSizeChanged)
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)
    Q_PROPERTY(QString gpuInfo READ gpuInfo NOTIFY gpuInfoChanged)

public:
    /// @p touchTable: a table starts full screen.
    explicit KQQuickView(bool touchTable, QWindow *parent = nullptr);

    bool fullScreen() const { return m_fullScreen; }
    /// Pixels; (-1, -1) before the first frame.
    QSize maxTextureSize() const { return m_maxTextureSize; }
    /// Frames drawn in the last whole second.
    int fps() const { return m_fps; }
    QString gpuInfo() const { return m_gpuInfo; }

    Q_INVOKABLE void fullScreenMode(bool enabled);
    Q_INVOKABLE QString version() const;
    /// Name and version for people. Hides QWindow::title(), the text in the window's frame.
    Q_INVOKABLE QString title() const;
    /// @p newSource: the medium now shown, empty for none.
    Q_INVOKABLE void updateTitle(const QString &newSource);
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
    bool m_fullScreen;
    QSize m_maxTextureSize{-1, -1};
    int m_fps = 0;
    QString m_gpuInfo;
    // Of the render thread.
    int m_frameCounter = 0;
    qint64 m_lastFpsSecond = 0;
};
