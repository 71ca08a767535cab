#include "support/TestEnvironment.h"

#include "platform/foundation/DeviceProfile.h"

#include <gtest/gtest.h>

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

namespace TestEnvironment {

bool useThrowawayHome(const QTemporaryDir &home)
{
    if (!home.isValid())
        return false;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/.config").toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + "/.local/share").toUtf8());
    qputenv("XDG_CACHE_HOME", (home.path() + "/.cache").toUtf8());
    const QString runtime = home.path() + "/runtime";
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    return true;
}

void cleanUpAfterEachTest()
{
    ::testing::UnitTest::GetInstance()->listeners().Append(new FreshStateAfterEachTest);
}

} // namespace TestEnvironment
