#pragma once

// The scene item that shows the depth camera's small picture with the joints of the hand. It takes
// no input. paint() and releaseGraphics() run on the render thread while the GUI thread waits; the
// rest runs on the GUI thread.

#include <QElapsedTimer>
#include <QImage>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <memory>

class KRealSense;
class QOpenGLShaderProgram;

class RealSenseCamera : public QQuickPaintedItem
{
    Q_OBJECT
    /// Pictures painted in the last second.
    Q_PROPERTY(int fps READ fps NOTIFY fpsChanged)

public:
    explicit RealSenseCamera(QQuickItem *parent = nullptr);
    ~RealSenseCamera() override;

    int fps() const { return m_fps; }

    /// Shows what @p kRealSense sees from now on; null shows nothing.
    Q_INVOKABLE void initialize(KRealSense *kRealSense);

    void paint(QPainter *painter) override;

public slots:
    void onImageChanged();
    void computeFps();

signals:
    void fpsChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void releaseGraphics();
    [[nodiscard]] bool prepareGraphics();
    void drawPicture();
    void drawPoints();

    QPointer<KRealSense> m_source;
    QTimer m_fpsTimer;
    int m_fps = 0;
    std::atomic<int> m_painted{0};
    // Written on the GUI thread, read by paint().
    QImage m_image;
    QVector<QPointF> m_points;

    // Of the render thread.
    std::unique_ptr<QOpenGLShaderProgram> m_pictureProgram;
    std::unique_ptr<QOpenGLShaderProgram> m_pointProgram;
    bool m_failed = false;
    unsigned m_texture = 0;
};
