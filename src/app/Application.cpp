#include "app/Application.h"

#include "KImage/KImage.h"
#include "KImage/MetadataWriter.h"
#include "analytics/KAnalyticsManager.h"
#include "app/CommandLine.h"
#include "app/Deployment.h"
#include "app/DesktopLink.h"
#include "app/KDisplay.h"
#include "app/KDropArea.h"
#include "app/KGlobalObject.h"
#include "app/KImageProvider.h"
#include "app/KQQuickView.h"
#include "app/MediaChoice.h"
#include "app/OpenGLFlavour.h"
#include "app/StillOptions.h"
#include "foundation/KVersion.h"
#include "hmd/KHmdUIManager.h"
#include "hmd/KOculus.h"
#include "hmd/KOpenVR.h"
#include "input/KSensor.h"
#include "input/SharedMemoryManager.h"
#include "input/leap/KLeap.h"
#include "input/leap/KLeapFingerOGL.h"
#include "input/realsense/KRealSense.h"
#include "net/KUdpSocket.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/OrbilensView.h"
#include "resources/SceneResources.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"
#include "settings/KSettingsReaders.h"
#include "video/KVideoPlugin.h"
#include "video/VlcConfig.h"
#include "video/VlcInstance.h"

#include <QDir>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQmlContext>
#include <QQmlEngine>
#include <QScreen>
#include <QTimer>

namespace {

constexpr QSize kMinimumWindowSize(640, 460);
// Devices answer on threads of their own; by then they have.
constexpr int kDevicesMilliseconds = 1000;

// Asking for the devices takes time: only for those who want to read it.
Q_LOGGING_CATEGORY(audio, "orbilens.audio", QtInfoMsg)

void logAudioDevices()
{
    if (!audio().isDebugEnabled())
        return;
    const QList<VlcAudioDevice> devices = vlcAudioDevices();
    for (const VlcAudioDevice &device : devices)
        qCDebug(audio).noquote() << device.label;
}

} // namespace

Application::Application(const QString &name, int &argc, char **argv)
    : QApplication(argc, argv)
    , m_deployment(std::make_unique<Deployment>(Deployment::ofThisBuild()))
{
    setObjectName(name);
    // The folders of settings and data depend on these two from here on.
    setOrganizationName(KVersion::makerName());
    setApplicationName(KVersion::applicationName());
    // By this name desktops find the window's entry.
    setDesktopFileName(QStringLiteral("orbilens-player"));
    m_arguments = ::restartArguments(arguments(), QDir::currentPath());
    m_settings = std::make_unique<KSettings>(KVersion::applicationName());
    m_settings->load();
    m_stillOptions = std::make_unique<StillOptions>(m_settings.get());
    connect(this, &QCoreApplication::aboutToQuit, this, &Application::desinitializeAnalytics);
}

Application::~Application()
{
    // Their threads use the view's share group.
    if (m_hmd)
        m_hmd->stopThread();
    if (m_sharedMemoryManager)
        m_sharedMemoryManager->stop();
    m_desktopLink.reset();
    if (m_view)
        m_view->setSource(QUrl()); // no binding of the scene should see a peer go
    VlcConfig::current().save(*m_settings->settingsManager());
    if (m_hmd)
        m_hmd->setHeadsetInterface(nullptr);
    m_hmdUiManager.reset();
    m_realSense.reset();
    m_videoPlugin.reset();
    m_view.reset();
    releaseVlcInstance(); // the players went with the view
    m_globalObject.reset();
    m_shaderBuilder.reset();
    m_hmd.reset();
    m_leap.reset();
    m_display.reset();
    m_sensor.reset();
    m_udpSocket.reset();
    m_textureProvider.reset();
    m_stillOptions.reset();
    sendPostedEvents(nullptr, QEvent::DeferredDelete); // no event loop will
    m_settings->save();
    m_settings.reset();
}

void Application::setGlobalObject(std::unique_ptr<KGlobalObject> globalObject)
{
    m_globalObject = std::move(globalObject);
}

void Application::setShaderBuilder(std::unique_ptr<KShaderCodeBuilder> builder)
{
    m_shaderBuilder = std::move(builder);
}

void Application::setTextureProvider(std::unique_ptr<KTextureProvider> provider)
{
    m_textureProvider = std::move(provider);
}

void Application::setDeployment(const Deployment &deployment)
{
    m_deployment = std::make_unique<Deployment>(deployment);
}

void Application::setHmd(std::unique_ptr<KHmd> hmd)
{
    // Nobody may be left with the old one when it goes.
    m_headsetView = hmd ? hmd->headsetView() : nullptr;
    if (m_view)
        m_view->rootContext()->setContextProperty(QStringLiteral("kHmdDevice"), hmd.get());
    m_hmd.swap(hmd);
}

QString Application::leapMotionSdkUrl() const
{
    return m_deployment->leapMotionSdkUrl;
}

QString Application::realSenseSdkUrl() const
{
    return m_deployment->realSenseSdkUrl;
}

QQuickView *Application::window() const
{
    return m_view.get();
}

QSize Application::maxTextureSize() const
{
    return m_view ? m_view->maxTextureSize() : QSize(-1, -1);
}

QMap<QString, QString> Application::snapshotTexts()
{
    KImage::SaveOptions options;
    options.software = KVersion::productName() + QLatin1Char(' ') + KVersion::fullText();
    options.maker = KVersion::makerName();
    options.model = KVersion::productName();
    return MetadataWriter::pngTexts(options);
}

void Application::tell(const QString &message)
{
    QMetaObject::invokeMethod(
        this,
        [this, message] {
            if (m_view)
                emit m_view->displayMessage(message);
        },
        Qt::QueuedConnection);
}

void Application::init()
{
    parseArguments();
    const bool sharedMemorySetting =
        m_settings->get(QStringLiteral("application/advanced/sharedmemory")).toBool();
    m_sharedMemory = sharedMemorySetting || option(QStringLiteral("adobeplugin")).toBool();
    initializeAnalytics();
    chooseVideoBackend();
    logAudioDevices();
    initRenderer();

    m_view = std::make_unique<KQQuickView>(option(QStringLiteral("touchtable")).toBool(),
                                           m_deployment->updateServer,
                                           m_settings->settingsManager(), m_crashHandler);
    connect(this, &Application::openGLReady, this, &Application::playArgsMedia,
            Qt::QueuedConnection);
    connect(m_view.get(), &QQuickWindow::sceneGraphInitialized, this,
            &Application::checkOpenGLVersion, Qt::DirectConnection);
    connect(m_view.get(), SIGNAL(closing(QQuickCloseEvent *)), this, SLOT(closeWindow()));
    connect(m_videoPlugin.get(), &KVideoPlugin::displayMessage, m_view.get(),
            &KQQuickView::displayMessage);
    m_view->engine()->addImportPath(QStringLiteral(":/"));
    // Those of stills and hand devices lie beside the scene's.
    const QStringList pluginPaths = scenePluginPaths(applicationDirPath());
    for (const QString &path : pluginPaths)
        addLibraryPath(path);
    provideStills();

    m_display = std::make_unique<KDisplay>();
    makeTextureProvider();
    m_globalObject = std::make_unique<KGlobalObject>(this);
    m_shaderBuilder = std::make_unique<KShaderCodeBuilder>(this);
    m_leap = std::make_unique<KLeap>(this);
    m_udpSocket = std::make_unique<KUdpSocket>(option(QStringLiteral("udp")).toString(), this);
    m_realSense = std::make_unique<KRealSense>(this);
    initHmdSdk();
    // The limits depend on the shader builder, which comes after the view state.
    m_globalObject->setFovLimits();
    m_sensor = KSensor::create(m_globalObject.get());
    connect(m_textureProvider.get(), &KTextureProvider::textureSizeChanged, m_globalObject.get(),
            &KGlobalObject::onTextureSizeChanged);

    m_view->engine()->addImportPath(applicationDirPath() + QLatin1String("/QtPlugins/"));
    publishContextProperties();
    collectInfos();
    registerQmlTypes();
    m_view->engine()->addImportPath(QStringLiteral("qrc:/QmlLib"));
    for (const QString &path : pluginPaths)
        m_view->engine()->addPluginPath(path);
    initSceneResources();
    m_view->setSource(QUrl(QStringLiteral("qrc:/qml/main_newui.qml")));
    m_desktopLink = std::make_unique<DesktopLink>(this);
    showWindow();
    m_view->startUpdates(m_deployment->productId);

    QDir::setSearchPaths(QStringLiteral("UI"), {QStringLiteral(":/UI")});
    QDir::setSearchPaths(QStringLiteral("Translation"), {QStringLiteral(":/Translation")});
}

void Application::initializeAnalytics()
{
    // Tests build an Application without statistics.
    if (!KAnalyticsManager::Instance())
        return;
    m_usageReport = std::make_unique<UsageReport>(KAnalyticsManager::Instance());
    m_usageReport->begin(*m_deployment, &m_networkManager, consent());
}

void Application::desinitializeAnalytics()
{
    if (m_usageReport)
        m_usageReport->end(consent());
}

void Application::collectInfos()
{
    if (!m_usageReport)
        return;
    UsageReport::Start start;
    start.videoBackend = m_videoPlugin->currentPlugin();
    start.adobePlugin = option(QStringLiteral("adobeplugin")).toBool();
    start.communicationState = m_udpSocket->role();
    start.realSense = isAvailable("kRealSense");
    start.sensor = isAvailable("kSensor");
    m_usageReport->sendStart(start);
    QTimer::singleShot(kDevicesMilliseconds, this, &Application::collectInfosLater);
}

void Application::collectInfosLater()
{
    m_usageReport->sendDevices(isAvailable("kHmdDevice"), isAvailable("kLeap"), consent());
}

UsageReport::Consent Application::consent() const
{
    return m_settings->get(QStringLiteral("application/general/enableAnalytics")).toBool()
               ? UsageReport::Consent::Given
               : UsageReport::Consent::Refused;
}

bool Application::isAvailable(const char *contextProperty) const
{
    const auto *device =
        m_view->rootContext()->contextProperty(QLatin1String(contextProperty)).value<QObject *>();
    return device && device->property("available").toBool();
}

void Application::parseArguments()
{
    m_options = parseCommandLine(QStringList{applicationFilePath()} + m_arguments).options;
    m_opensMedia = option(QStringLiteral("files")).isValid();
}

void Application::chooseVideoBackend()
{
    KSettingsManager *store = m_settings->settingsManager();
    KSRFromKSettingsManager reader(store);
    VlcConfig &config = VlcConfig::current();
    config.load(reader);
    // What one types for libvlc's own arguments means nothing to another backend.
    config.customMode = option(QStringLiteral("customvlc")).toBool();
    m_videoPlugin = std::make_unique<KVideoPlugin>(store, config.customMode ? QStringLiteral("vlc")
                                                                            : QString());
}

void Application::makeTextureProvider()
{
    constexpr bool kCopyMovingPictures = true;
    m_textureProvider =
        std::make_unique<KTextureProvider>(this, kCopyMovingPictures, m_sharedMemory);
    if (!m_sharedMemory)
        return;
    auto manager = std::make_unique<SharedMemoryManager>(this);
    m_sharedMemoryManager = manager.get();
    m_textureProvider->setFrameSource(std::move(manager));
}

void Application::provideStills()
{
    auto provider = std::make_unique<KImageProvider>();
    provider->setOptions(m_stillOptions->options());
    connect(m_stillOptions.get(), &StillOptions::optionsChanged, m_view.get(),
            [this, stills = provider.get()] { stills->setOptions(m_stillOptions->options()); });
    // By the time the scene asks for the still of this start, it may be there.
    const QStringList files = option(QStringLiteral("files")).toStringList();
    if (!files.isEmpty())
        provider->expect(MediaChoice::urlFromText(files.first()).toLocalFile());
    m_view->engine()->addImageProvider(KImageProvider::Name(), provider.release());
}

void Application::initRenderer()
{
    const bool desktop =
        openGLFlavourOfThisRun(*m_settings->settingsManager(), m_options) == OpenGLFlavour::Desktop;
    if (!testAttribute(desktop ? Qt::AA_UseDesktopOpenGL : Qt::AA_UseOpenGLES))
        qWarning("The program was started with another OpenGL than its settings ask for.");
}

void Application::publishContextProperties()
{
    QQmlContext *context = m_view->rootContext();
    const struct
    {
        const char *name;
        QObject *object;
    } properties[] = {{"kApp", this},
                      {"kVideoPlugin", m_videoPlugin.get()},
                      {"kView", m_view.get()},
                      {"kShaderCodeBuilder", m_shaderBuilder.get()},
                      {"kHmdDevice", m_hmd.get()},
                      {"kLeap", m_leap.get()},
                      {"kGlobalObject", m_globalObject.get()},
                      {"kSensor", m_sensor.get()},
                      {"kDisplay", m_display.get()},
                      {"kRealSense", m_realSense.get()},
                      {"kTextureProvider", m_textureProvider.get()},
                      {"kSettings", m_settings.get()},
                      {"kStillOptions", m_stillOptions.get()},
                      {"qt_debug", nullptr},
                      {"kAnalyticsManager", KAnalyticsManager::Instance()}};
    for (const auto &property : properties)
        context->setContextProperty(QLatin1String(property.name), property.object);
}

void Application::registerQmlTypes()
{
    const char *const uri = "Orbilens";
    const QString enumsOnly = QStringLiteral("Enums only");
    qmlRegisterUncreatableType<KShaderCodeBuilder>(uri, 1, 0, "KShaderCodeBuilder", enumsOnly);
    qmlRegisterUncreatableType<KUdpSocket>(uri, 1, 0, "KUdpSocket", enumsOnly);
    qmlRegisterUncreatableType<KHmdUIManager>(uri, 1, 0, "KHmdUIManager", enumsOnly);
    qmlRegisterType<KDropArea>(uri, 1, 0, "KDropArea");
    qmlRegisterType<KLeapFingerOGL>(uri, 1, 0, "KLeapFingerOGL");
    qRegisterMetaType<Application *>("Application*"); // what the view's init() takes
    qmlRegisterType<OrbilensView>(uri, 1, 0, "OrbilensView");
}

void Application::showWindow()
{
    m_view->setTitle(KVersion::productName());
    Qt::WindowFlags flags = Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                            Qt::WindowCloseButtonHint | Qt::WindowFullscreenButtonHint;
    const bool adobePlugin = option(QStringLiteral("adobeplugin")).toBool();
    if (adobePlugin)
        flags |= Qt::WindowStaysOnTopHint;
    m_view->setFlags(flags);
    m_view->setMinimumSize(kMinimumWindowSize);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    // The last run may have had a larger screen.
    if (const QScreen *screen = m_view->screen())
        m_view->resize(m_view->size().boundedTo(screen->availableSize()));
    if (!adobePlugin && m_view->fullScreen())
        m_view->showFullScreen();
    else
        m_view->showNormal();
}

void Application::checkOpenGLVersion()
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (!context || !context->functions()->hasOpenGLFeature(QOpenGLFunctions::Shaders)) {
        QMetaObject::invokeMethod(this, &Application::displayOpenGLErrorMessage,
                                  Qt::QueuedConnection);
        return;
    }
    m_glContext = context;
    m_sharedGlContext = std::make_unique<QOpenGLContext>();
    m_sharedGlContext->setShareContext(context);
    m_sharedGlContext->setFormat(context->format());
    m_sharedGlContext->create();
    emit openGLReady();
}

void Application::initHmdSdk()
{
    if (!m_hmd) {
        const QString sdk = m_settings->get(QStringLiteral("application/hmd/sdk")).toString();
        if (sdk == QLatin1String("openvr")) {
            setHmd(std::make_unique<KOpenVR>(this));
            return;
        }
        setHmd(std::make_unique<KOculus>(this));
        if (sdk == QLatin1String("auto"))
            connect(m_hmd.get(), &KHmd::workerThreadFinished, this, &Application::initHmdSdk,
                    Qt::QueuedConnection);
        return;
    }
    if (!m_hmd->fallbackRequested())
        return;
    auto next = std::make_unique<KOpenVR>(this);
    // What the first family had to say comes before all that this one adds.
    next->KHmd::setLogMessage(m_hmd->logMessage() + QLatin1Char('\n'));
    setHmd(std::move(next));
    m_hmd->startThread();
}

void Application::initHmdUIManager()
{
    if (!m_hmd || !m_hmd->isRunning())
        return; // its thread has ended since it asked
    // Another program brings an interface of its own.
    if (!m_hmdUiManager && !m_sharedMemory && m_view)
        m_hmdUiManager = std::make_unique<KHmdUIManager>(this, sharedGlContext(), m_view->engine());
    m_hmd->setHeadsetInterface(m_hmdUiManager.get());
    m_hmd->setAvailable(true);
    m_hmd->setActivated(true);
    m_shaderBuilder->setHmdMode(true);
}

void Application::displayOpenGLErrorMessage()
{
    QMessageBox::critical(nullptr, KVersion::productName(), tr("OpenGL 2.0 minimum is required."));
    closeWindow();
}

void Application::playArgsMedia()
{
    disconnect(this, &Application::openGLReady, this, &Application::playArgsMedia);
    const QVariant files = option(QStringLiteral("files"));
    if (files.isValid())
        m_globalObject->openFiles(files.toStringList(), false);
    // By then the scene knows, as it now does not, how large a still may be, and waits for one.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_opensMedia = false;
            emit opensMediaChanged();
        },
        Qt::QueuedConnection);
}

void Application::closeWindow()
{
    m_globalObject->quit();
}
