#include "support/IsolatedHome.h"
#include "support/KeepModulesLoaded.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char **argv)
{
    test::IsolatedHome home;
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QCoreApplication::addLibraryPath(QStringLiteral(ORBILENS_BINARY_DIR "/src/app"));
    return RUN_ALL_TESTS();
}
