// The state every test process starts from: a throwaway HOME with its own standard folders, set
// before the application object exists, and a listener that leaves no claim photos and the real
// screen as the device profile after each test, so that tests sharing one process start from the
// same state as a test alone in its process.
#pragma once

#include "platform/foundation/DeviceProfile.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace TestEnvironment {

// Points HOME, the XDG folders and Qt's standard paths into the directory. false when it is not
// usable.
inline bool useThrowawayHome(const QTemporaryDir &home)
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

// After each test: no claim photos on disk and the real screen as the device profile again.
class FreshStateAfterEachTest : public ::testing::EmptyTestEventListener
{
    void OnTestEnd(const ::testing::TestInfo &) override
    {
        ZQTPlatform::DeviceProfile::resetToScreen();
        QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/ZQTPhotos").removeRecursively();
    }
};

// Registers the after-each-test clean-up with GoogleTest (after InitGoogleTest).
inline void cleanUpAfterEachTest()
{
    ::testing::UnitTest::GetInstance()->listeners().Append(new FreshStateAfterEachTest);
}

} // namespace TestEnvironment
