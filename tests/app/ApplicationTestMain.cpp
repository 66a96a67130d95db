// Runs the suite inside an Application without init(), to which each test gives the peers it needs.

#include "app/Application.h"
#include "support/IsolatedHome.h"
#include "support/KeepModulesLoaded.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    test::IsolatedHome home;
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    Application application(QStringLiteral("test"), argc, argv);
    QCoreApplication::addLibraryPath(QStringLiteral(ORBILENS_BINARY_DIR "/src/app"));
    return RUN_ALL_TESTS();
}
