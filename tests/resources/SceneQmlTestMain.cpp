// Runs every tst_*.qml of one folder in engines that see what the program's engine sees: its
// resources, plug-ins and enums, real settings, and small stand-ins for the objects that a test
// has to watch. A warning of an engine fails the run, whichever test was under way, but for those
// of "Missing.qml", which tests name where they need a file that does not load.

#include "net/KUdpSocket.h"
#include "render/KShaderCodeBuilder.h"
#include "resources/SceneResources.h"
#include "settings/KSettings.h"
#include "support/Files.h"
#include "support/IsolatedHome.h"
#include "support/KeepModulesLoaded.h"
#include "video/KVideoPlugin.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QMutex>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QtQuickTest/quicktest.h>

#include <cstdio>
#include <utility>

namespace {

/// Stands for the provider of stills and notes what it is asked for.
class StillRequests : public QObject, public QQuickImageProvider
{
    Q_OBJECT

public:
    StillRequests()
        : QQuickImageProvider(Image)
    {}

    QImage requestImage(const QString &id, QSize *, const QSize &requestedSize) override
    {
        const QMutexLocker lock(&m_mutex);
        m_requests.append(
            id + QStringLiteral(" %1x%2").arg(requestedSize.width()).arg(requestedSize.height()));
        return QImage(8, 4, QImage::Format_RGB32);
    }

public slots:
    QStringList take()
    {
        const QMutexLocker lock(&m_mutex);
        return std::exchange(m_requests, {});
    }

private:
    QMutex m_mutex;
    QStringList m_requests;
};

/// Quick Test makes an engine for each file and hands it out here.
class Setup : public QObject
{
    Q_OBJECT

public:
    int warnings() const { return m_warnings; }

    /// A table of cases that lies beside the tests.
    Q_INVOKABLE static QVariant read(const QString &name)
    {
        const QString path = QStringLiteral(ORBILENS_SOURCE_DIR "/tests/resources/%1.json");
        return QJsonDocument::fromJson(test::readFile(path.arg(name))).toVariant();
    }

public slots:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral(":/"));
        engine->addImportPath(QStringLiteral("qrc:/QmlLib"));
        for (const QString &path : scenePluginPaths(QStringLiteral(ORBILENS_BINARY_DIR "/src/app")))
            engine->addPluginPath(path);
        connect(engine, &QQmlEngine::warnings, this, [this](const QList<QQmlError> &errors) {
            for (const QQmlError &error : errors)
                m_warnings += error.toString().contains(QLatin1String("Missing.qml")) ? 0 : 1;
        });

        auto *settings = new KSettings(QStringLiteral("panels"), engine);
        settings->load();
        QQmlContext *context = engine->rootContext();
        context->setContextProperty(QStringLiteral("kSettings"), settings);
        context->setContextProperty(QStringLiteral("kVideoPlugin"),
                                    new KVideoPlugin(settings->settingsManager(), {}, engine));
        context->setContextProperty(QStringLiteral("kAnalyticsManager"), this);
        auto *stills = new StillRequests;
        engine->addImageProvider(QStringLiteral("still"), stills);
        context->setContextProperty(QStringLiteral("stillRequests"), stills);
        context->setContextProperty(QStringLiteral("tables"), this);
        context->setContextProperty(QStringLiteral("screenshotFolder"), screenshots());
        for (const char *device : {"kHmdDevice", "kLeap", "kRealSense", "kSensor"})
            context->setContextProperty(QLatin1String(device), nullptr);
        publish(context, "kGlobalObject", "FakeGlobalObject");
        publish(context, "kView", "FakeView");
    }

private:
    static void publish(QQmlContext *context, const char *name, const char *file)
    {
        const QString path = QStringLiteral(ORBILENS_SOURCE_DIR "/tests/resources/panels/%1.qml");
        QQmlComponent component(context->engine(),
                                QUrl::fromLocalFile(path.arg(QLatin1String(file))));
        QObject *object = component.create(context);
        object->setParent(context->engine());
        context->setContextProperty(QLatin1String(name), object);
    }

    static QString screenshots()
    {
        const QString folder = QStringLiteral(ORBILENS_BINARY_DIR "/screenshots");
        QDir().mkpath(folder);
        return folder;
    }

    int m_warnings = 0;
};

} // namespace

/// There in builds with the address sanitizer only. Looks for leaks now and not at exit.
extern "C" void __lsan_do_leak_check() __attribute__((weak));

int main(int argc, char **argv)
{
    test::IsolatedHome home;
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    QApplication application(argc, argv);
    const char *const uri = "Orbilens";
    const QString enumsOnly = QStringLiteral("Enums only");
    qmlRegisterUncreatableType<KShaderCodeBuilder>(uri, 1, 0, "KShaderCodeBuilder", enumsOnly);
    qmlRegisterUncreatableType<KUdpSocket>(uri, 1, 0, "KUdpSocket", enumsOnly);
    initSceneResources();
    Setup setup;
    const int failures =
        quick_test_main_with_setup(argc, argv, "scene", ORBILENS_SCENE_TESTS, &setup);
    if (setup.warnings() > 0)
        std::fprintf(stderr, "%d warnings of QML engines, see above\n", setup.warnings());
    // At exit the platform's libraries are unloaded, and the suppressions that name them miss.
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
    return failures + setup.warnings();
}

#include "SceneQmlTestMain.moc"
