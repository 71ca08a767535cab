// Test entry point of the real-window tests: each process starts its own X server (Xvfb) on a free
// display and runs Qt's xcb platform on it, so that what the tests read back is what the X server
// shows, not what the widgets would draw on request. Listing the tests needs no server.
#include "support/TestEnvironment.h"
#include "window/XvfbServer.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

// Large enough for every window size the tests use.
constexpr int screenWidth = 1280;
constexpr int screenHeight = 1024;

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    if (!TestEnvironment::useThrowawayHome(home))
        return 3;
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();

    const XvfbServer server(screenWidth, screenHeight);
    if (!server.isRunning()) {
        std::fprintf(stderr, "no X server: %s\n", qPrintable(server.error()));
        return 4;
    }
    qputenv("DISPLAY", server.display().toLatin1());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("XAUTHORITY");

    QApplication app(argc, argv);
    TestEnvironment::cleanUpAfterEachTest();
    return RUN_ALL_TESTS();
}
