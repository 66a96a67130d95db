// Runs every tst_*.qml of this folder in engines that see what the program's engine sees: its
// resources, its plug-ins, and nothing of the developer's home. A warning of an engine fails the
// run, whichever test was under way.

#include "resources/SceneResources.h"
#include "support/IsolatedHome.h"
#include "support/KeepModulesLoaded.h"

#include <QApplication>
#include <QDir>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest/quicktest.h>

#include <cstdio>

namespace {

/// Quick Test makes an engine for each file and hands it out here.
class Setup : public QObject
{
    Q_OBJECT

public:
    int warnings() const { return m_warnings; }

public slots:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral(":/"));
        engine->addImportPath(QStringLiteral("qrc:/QmlLib"));
        const QStringList pluginPaths =
            scenePluginPaths(QStringLiteral(ORBILENS_BINARY_DIR "/src/app"));
        for (const QString &path : pluginPaths)
            engine->addPluginPath(path);
        engine->rootContext()->setContextProperty(QStringLiteral("screenshotFolder"),
                                                  screenshots());
        connect(engine, &QQmlEngine::warnings, this,
                [this](const QList<QQmlError> &errors) { m_warnings += errors.size(); });
    }

private:
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
    initSceneResources();
    Setup setup;
    const int failures = quick_test_main_with_setup(argc, argv, "qml_tests",
                                                    ORBILENS_SOURCE_DIR "/tests/qml", &setup);
    if (setup.warnings() > 0)
        std::fprintf(stderr, "%d warnings of QML engines, see above\n", setup.warnings());
    // At exit the platform's libraries are unloaded, and the suppressions that name them miss.
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
    return failures + setup.warnings();
}

#include "QmlTestMain.moc"
