// Test entry point of the offscreen tests: every test process gets a throwaway HOME and standard
// folders before the application object exists, and runs on the offscreen platform.
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char **argv)
{
    QTemporaryDir home;
    if (!TestEnvironment::useThrowawayHome(home))
        return 3;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    TestEnvironment::cleanUpAfterEachTest();
    return RUN_ALL_TESTS();
}
