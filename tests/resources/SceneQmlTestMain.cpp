#include "resources/SceneResources.h"
#include "support/IsolatedHome.h"

#include <QApplication>
#include <QtQuickTest>

int main(int argc, char **argv)
{
    test::IsolatedHome home;
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    QApplication application(argc, argv);
    initSceneResources();
    return quick_test_main(argc, argv, "scene", QUICK_TEST_SOURCE_DIR);
}
