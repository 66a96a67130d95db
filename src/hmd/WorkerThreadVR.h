#pragma once

// The thread that draws the panorama into a headset, in a GL context of its own that shares
// textures with the scene; owned by its KHmd. The subclasses talk to the device.
//
// The object itself lives on the GUI thread: its slots, constructor and destructor run there. What
// crosses to the device's thread is copied under a lock (view state, shader texts, pose) or
// atomic. The rest belongs to the device's thread alone.

#include "hmd/EyeGeometry.h"
#include "hmd/PoseLock.h"
#include "render/PanoramaProgram.h"
#include "render/ViewGeometry.h"

#include <QElapsedTimer>
#include <QMatrix4x4>
#include <QThread>

#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

class Application;
class HeadsetInterface;
class KHmd;
class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLFunctions;

class WorkerThreadVR : public QThread
{
    Q_OBJECT

public:
    explicit WorkerThreadVR(KHmd *hmd);
    ~WorkerThreadVR() override;

    /// Makes the context, sharing with @p shareContext (current on no thread), and its surface, and
    /// hands them to this thread. Before start(); false when the driver refuses.
    [[nodiscard]] bool prepareContext(QOpenGLContext *shareContext);

    /// Asks the thread to end and wakes it; does not wait for it.
    void stop();

    /// Ends a sleep early. Any thread.
    void wake();

    /// Null for none. Any thread; must outlive the thread.
    void setHeadsetInterface(HeadsetInterface *ui) { m_interface = ui; }

    /// What HeadMotion::isPose() refuses while nothing tracks a head. Any thread.
    QMatrix4x4 hmdPose() const;

public slots:
    /// The shaders' texts have changed: takes the new ones, which the next frame compiles.
    void dirtyShader();

protected:
    static constexpr int kIdleMilliseconds = 1000; ///< a round while the headset is not in use

    /// The device's frames until the thread is asked to end; context current, device ready.
    virtual void renderLoop() = 0;

    /// Radians per second of yaw, pitch and roll since the last frame.
    virtual void headVelocity(float out[3]) = 0;

    /// What the controllers ask for, 1 to 6; 0 for nothing.
    virtual int controllerCommand() = 0;

    /// Common work before the eyes of a frame: gaze and controllers.
    virtual void onFrameStart();

    /// Draws one eye (0 left, 1 right) into the bound framebuffer, which is cleared to black first:
    /// the panorama, and the interface where it is shown. setEye() has told about the eye before.
    virtual void renderEye(int eye);

    KHmd *hmd() const { return m_hmd; }
    Application *application() const { return m_application; }

    /// Queues @p text to the device's log.
    void log(const QString &text);

    /// Makes this thread's context current; only inside run().
    [[nodiscard]] bool makeCurrent();

    /// Lets programs and context go; at the end of run(), whatever happened before.
    void releaseGraphics();

    QOpenGLContext *glContext() const { return m_glContext.get(); }

    /// Tells the GUI thread whether a device was found, and waits for what it makes of it. False
    /// when the thread should end: a restart was asked for, or the program is ending.
    [[nodiscard]] bool checkHmdMode(bool detected);

    /// Asks Application to bring up the interface and switch the headset on.
    void announceDevice();

    /// Since onFrameStart() last had a picture to show; 0 before.
    float secondsOfFrame() const;

    /// Sleeps until the time is over, or until wake() or stop(). Inside run() only.
    void sleepFor(int milliseconds);

    /// Describes an eye; once, or again whenever something of it may have changed.
    /// @p projection of the device, with -1 between its planes; @p eyeToHead of which the rotation
    /// counts; @p pixels of the eye's framebuffer.
    void setEye(int eye, const QMatrix4x4 &projection, const QMatrix4x4 &eyeToHead,
                const QSize &pixels);

    /// Takes over the head's pose as the device gives it, camera to world.
    void storePose(const QMatrix4x4 &device);

private:
    /// What the eyes show of the view state, copied when it changes.
    struct Scene
    {
        QMatrix4x4 offset; ///< base rotation of the medium
        float fov = 90;
        float cameraYaw = 0;
        float cameraPitch = 0;
        float yawMin = 0;
        float yawMax = 0;
        float pitchMin = 0;
        float pitchMax = 0;
        bool flat = false; ///< a flat picture, which keeps the user's field of view
    };
    struct Texts
    {
        QString vertex, panorama, overlay;
    };
    struct Eye
    {
        QMatrix4x4 projection;
        QMatrix4x4 eyeToHead; ///< rotation only
        ViewportParameters viewport;
        EyeQuad quad;
    };

    void followViewState();
    void takeScene();
    [[nodiscard]] bool showsWholeSphere() const;
    void rebuildPrograms();
    void drawInterface(QOpenGLFunctions *functions, HeadsetInterface *ui, const QMatrix4x4 &pose,
                       const Eye &eye);
    void queueGazeEvents(bool tap);

    KHmd *const m_hmd;
    Application *const m_application;
    std::atomic<HeadsetInterface *> m_interface{nullptr};
    const bool m_gazeUI;
    std::unique_ptr<QOpenGLContext> m_glContext;
    std::unique_ptr<QOffscreenSurface> m_surface;

    std::mutex m_sleepLock; // the standard one, which the thread sanitizer sees
    std::condition_variable m_wake;
    bool m_woken = false; // under m_sleepLock
    // The GUI thread's word on the mode. Set under m_sleepLock too; atomic, since the sanitizer
    // does not see that a wait inside the standard library gives the lock away.
    enum class ModeAnswer { None, GoesOn, Ends };
    std::atomic<ModeAnswer> m_modeAnswer{ModeAnswer::None};
    std::atomic<bool> m_gazeQueued{false};
    std::atomic<bool> m_tapQueued{false};

    mutable PoseLock m_poseLock;
    QMatrix4x4 m_hmdPose; // under m_poseLock, as are the next two
    Scene m_scene;
    Texts m_texts;
    std::atomic<bool> m_dirty{true};
    bool m_wholeSphere = true; // of m_texts; GUI thread

    // Device thread.
    std::array<Eye, 2> m_eyes;
    PanoramaProgram m_panorama;
    PanoramaProgram m_overlay;
    PanoramaUniforms m_uniforms;
    int m_lastCommand = 0;
    QElapsedTimer m_frameTimer; // since the frame began
};
