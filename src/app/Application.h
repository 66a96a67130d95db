#pragma once

// The owner of every peer object of the player: makes them in a fixed order, publishes them to the
// scene, and deletes them in a fixed order. It decides nothing else. Lives in main on the GUI
// thread; checkOpenGLVersion alone runs on the scene graph's render thread.
//
// This header is a hub of forward declarations and getters, so that including it costs nothing.

#include "app/UsageReport.h"

#include <QApplication>
#include <QMap>
#include <QNetworkAccessManager>
#include <QSize>
#include <QVariant>

#include <memory>

class CrashHandler;
class DesktopLink;
class HeadsetView;
class KDisplay;
class KGlobalObject;
class KHmd;
class KHmdUIManager;
class KLeap;
class KQQuickView;
class KRealSense;
class KSensor;
class KSettings;
class KShaderCodeBuilder;
class KTextureProvider;
class KVideoPlugin;
class StillOptions;
class KUdpSocket;
class QOpenGLContext;
class QQuickView;
class SharedMemoryManager;
struct Deployment;

class Application : public QApplication
{
    Q_OBJECT
    // Media of the command line are still to be opened: the start screen would only flash by.
    Q_PROPERTY(bool opensMedia READ opensMedia NOTIFY opensMediaChanged)

public:
    /// Exit status of the event loop that asks main to start the program again.
    static constexpr int kRestartStatus = 123456789;

    /// Makes the QApplication and the settings; everything else waits for init(). File arguments
    /// are made absolute against the current directory here, before main leaves it.
    Application(const QString &name, int &argc, char **argv);
    ~Application() override;

    /// Makes all peers, loads the scene and shows the window.
    void init();

    KSettings *settings() const { return m_settings.get(); }
    StillOptions *stillOptions() const { return m_stillOptions.get(); }
    KQQuickView *view() const { return m_view.get(); }
    KGlobalObject *globalObject() const { return m_globalObject.get(); }
    KShaderCodeBuilder *shaderBuilder() const { return m_shaderBuilder.get(); }
    KVideoPlugin *videoPlugin() const { return m_videoPlugin.get(); }
    KDisplay *display() const { return m_display.get(); }
    KSensor *sensor() const { return m_sensor.get(); }
    /// Replaced when the automatic choice goes on to the next kind of device.
    KHmd *hmd() const { return m_hmd.get(); }
    /// The interface inside the headset; null until the first headset works.
    KHmdUIManager *hmdUiManager() const { return m_hmdUiManager.get(); }
    KLeap *leap() const { return m_leap.get(); }
    KRealSense *realSense() const { return m_realSense.get(); }
    KTextureProvider *textureProvider() const { return m_textureProvider.get(); }

    /// What the view draws from a headset; null while there is none.
    HeadsetView *headsetView() const { return m_headsetView; }
    void setHeadsetView(HeadsetView *view) { m_headsetView = view; }

    /// The scene graph's own context and a second one in its share group, for other threads. Both
    /// are null until openGLReady().
    QOpenGLContext *glContext() const { return m_glContext; }
    QOpenGLContext *sharedGlContext() const { return m_sharedGlContext.get(); }

    /// The servers, identifiers and links of this build.
    const Deployment &deployment() const { return *m_deployment; }
    /// Of these, what lower folders need: addresses, empty where this build has none.
    QString leapMotionSdkUrl() const;
    QString realSenseSdkUrl() const;

    /// Null in tests without one; otherwise outlives this object.
    CrashHandler *crashHandler() const { return m_crashHandler; }
    void setCrashHandler(CrashHandler *handler) { m_crashHandler = handler; }

    /// The parsed command line: "udp" (text), "adobeplugin", "customvlc", "touchtable" (bool) and
    /// "files" (list of texts). An option that was not given yields an invalid variant.
    QVariant option(const QString &name) const { return m_options.value(name); }

    bool opensMedia() const { return m_opensMedia; }

    /// The arguments of a restart: this run's, with files absolute, without the program's name.
    QStringList restartArguments() const { return m_arguments; }

    /// Frames come from another program's shared memory instead of a player.
    bool sharedMemory() const { return m_sharedMemory; }

    /// view() for whoever knows no more of it than that it is a window with a scene; null without.
    QQuickView *window() const;

    /// Largest picture the driver takes, in pixels; (-1, -1) until the first frame.
    QSize maxTextureSize() const;

    /// Who makes a snapshot and when, as the text chunks of its file. Any thread.
    static QMap<QString, QString> snapshotTexts();

    /// Shows @p message to the user, from any thread.
    void tell(const QString &message);

    // For tests, which hand an Application without init() just the peers they need.
    void setGlobalObject(std::unique_ptr<KGlobalObject> globalObject);
    void setShaderBuilder(std::unique_ptr<KShaderCodeBuilder> builder);
    void setTextureProvider(std::unique_ptr<KTextureProvider> provider);
    void setDeployment(const Deployment &deployment);
    void setHmd(std::unique_ptr<KHmd> hmd);
    void setOption(const QString &name, const QVariant &value) { m_options.insert(name, value); }

public slots:
    void displayOpenGLErrorMessage();
    /// Runs on the render thread with the scene graph's context current.
    void checkOpenGLVersion();
    /// Makes the headset object of the setting; called again, goes on from the first family to the
    /// second where the first has asked for it.
    void initHmdSdk();
    /// A headset works: brings up the interface inside it and switches it on.
    void initHmdUIManager();
    /// Qt takes the flavour of OpenGL before this object exists; warns where main asked it for
    /// another than this run's settings and options want.
    void initRenderer();
    /// The end of the window is the end of the program, by way of KGlobalObject::quit().
    void closeWindow();

signals:
    void openGLReady();
    void opensMediaChanged();

private slots:
    void initializeAnalytics();
    void desinitializeAnalytics();
    void collectInfos();
    void collectInfosLater();
    void playArgsMedia();

private:
    void parseArguments();
    void chooseVideoBackend();
    void provideStills();
    void makeTextureProvider();
    void registerQmlTypes();
    void publishContextProperties();
    void showWindow();
    UsageReport::Consent consent() const;
    bool isAvailable(const char *contextProperty) const;

    std::unique_ptr<const Deployment> m_deployment;
    CrashHandler *m_crashHandler = nullptr;
    std::unique_ptr<UsageReport> m_usageReport;
    std::unique_ptr<KSettings> m_settings;
    std::unique_ptr<StillOptions> m_stillOptions;
    std::unique_ptr<KQQuickView> m_view;
    std::unique_ptr<KGlobalObject> m_globalObject;
    std::unique_ptr<KShaderCodeBuilder> m_shaderBuilder;
    std::unique_ptr<KDisplay> m_display;
    std::unique_ptr<KVideoPlugin> m_videoPlugin;
    std::unique_ptr<KHmd> m_hmd;
    std::unique_ptr<KHmdUIManager> m_hmdUiManager;
    std::unique_ptr<KSensor> m_sensor;
    std::unique_ptr<KLeap> m_leap;
    std::unique_ptr<KUdpSocket> m_udpSocket;
    std::unique_ptr<DesktopLink> m_desktopLink;
    std::unique_ptr<KTextureProvider> m_textureProvider;
    std::unique_ptr<KRealSense> m_realSense;
    SharedMemoryManager *m_sharedMemoryManager = nullptr; // of m_textureProvider
    HeadsetView *m_headsetView = nullptr;
    QOpenGLContext *m_glContext = nullptr;
    std::unique_ptr<QOpenGLContext> m_sharedGlContext;
    QMap<QString, QVariant> m_options;
    QStringList m_arguments;
    bool m_sharedMemory = false;
    bool m_opensMedia = false;
    QNetworkAccessManager m_networkManager;
};
