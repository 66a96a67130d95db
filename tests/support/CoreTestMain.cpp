#include "support/IsolatedHome.h"
#include "support/KeepModulesLoaded.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char **argv)
{
    test::IsolatedHome home;
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    QCoreApplication::addLibraryPath(QStringLiteral(ORBILENS_BINARY_DIR "/src/app"));
    return RUN_ALL_TESTS();
}
