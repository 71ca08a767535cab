// Test entry point: every test process gets a throwaway HOME and standard folders before the
// application object exists, and runs on the offscreen platform. Tests that share one process
// start from the same state as a test alone in its process.
#include "platform/DeviceProfile.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

// After each test: no claim photos on disk and the real screen as the device profile again.
class FreshStateAfterEachTest : public ::testing::EmptyTestEventListener
{
    void OnTestEnd(const ::testing::TestInfo &) override
    {
        ZQTPlatform::DeviceProfile::resetToScreen();
        QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/ZQTPhotos").removeRecursively();
    }
};

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    if (!home.isValid())
        return 3;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/.config").toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + "/.local/share").toUtf8());
    qputenv("XDG_CACHE_HOME", (home.path() + "/.cache").toUtf8());
    const QString runtime = home.path() + "/runtime";
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);

    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new FreshStateAfterEachTest);
    return RUN_ALL_TESTS();
}
