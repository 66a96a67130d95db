#pragma once

// The scene item that paints the user's hands over the picture: over the window, or what one eye of
// a headset sees of them. It takes no input. paint() runs on the render thread while the GUI thread
// waits; the rest runs on the GUI thread.

#include "input/hands/HandFrame.h"

#include <QPointer>
#include <QQuickPaintedItem>

#include <memory>

class KGlobalObject;
class QOpenGLShaderProgram;

class KLeapFingerOGL : public QQuickPaintedItem
{
    Q_OBJECT
    /// 0 for the window, 1 and 2 for the left and right eye.
    Q_PROPERTY(int cameraId READ cameraId WRITE setCameraId NOTIFY cameraIdChanged)
    /// Thickness of the fingers, 1 as they are.
    Q_PROPERTY(double userValue READ userValue WRITE setUserValue NOTIFY userValueChanged)
    /// 0 for a tracker on the desk, else one on the head.
    Q_PROPERTY(int hmdMode READ hmdMode WRITE setHmdMode NOTIFY hmdModeChanged)
    /// Share of the item's width, counted from the eye's outer side, that its lens shows.
    Q_PROPERTY(double lensLimit READ lensLimit WRITE setLensLimit NOTIFY lensLimitChanged)

public:
    enum Camera { Window = 0, LeftEye = 1, RightEye = 2 };

    explicit KLeapFingerOGL(QQuickItem *parent = nullptr);
    ~KLeapFingerOGL() override;

    int cameraId() const { return m_cameraId; }
    double userValue() const { return m_userValue; }
    int hmdMode() const { return m_hmdMode; }
    double lensLimit() const { return m_lensLimit; }
    void setCameraId(int id);
    void setUserValue(double value);
    void setHmdMode(int mode);
    void setLensLimit(double limit);

    void paint(QPainter *painter) override;

public slots:
    void drawFingersSlot(FingerList fingers);
    /// A split view shows the hands in both halves. May be null.
    void setKGlobalObjectSlot(KGlobalObject *camera);

signals:
    void cameraIdChanged();
    void userValueChanged();
    void hmdModeChanged();
    void lensLimitChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    [[nodiscard]] bool prepareProgram();
    void draw(const QRect &viewport);

    int m_cameraId = Window;
    double m_userValue = 1;
    int m_hmdMode = 0;
    double m_lensLimit = 1;
    FingerList m_fingers;
    QPointer<KGlobalObject> m_camera;
    /// Of the render thread; it lets go of its GL name where a context of its group is current.
    std::unique_ptr<QOpenGLShaderProgram> m_program;
    bool m_programFailed = false;
};
