#include "platform/DeviceProfile.h"

#include "platform/StringScanner_p.h"

#include <QGuiApplication>
#include <QMutex>
#include <QScreen>
#include <QSysInfo>

#include <optional>

namespace ZQTPlatform {

namespace {

// The profile chosen by the host (none: read the screen) and the device state the screens
// change while they run.
struct State
{
    std::optional<DeviceProfile> chosen;
    int deviceOrientation = 1;
    bool statusBarHidden = false;
};

QMutex stateMutex;
State state;

DeviceProfile screenProfile()
{
    DeviceProfile profile;
    profile.name = QSysInfo::prettyProductName();
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        if (const QScreen *screen = QGuiApplication::primaryScreen()) {
            profile.mainScreenBounds = screen->size();
            profile.screenScale = screen->devicePixelRatio();
        }
    }
    profile.systemVersion = QSysInfo::productVersion();
    return profile;
}

} // namespace

DeviceProfile DeviceProfile::current()
{
    QMutexLocker lock(&stateMutex);
    DeviceProfile profile = state.chosen ? *state.chosen : screenProfile();
    profile.deviceOrientation = state.deviceOrientation;
    profile.statusBarHidden = state.statusBarHidden;
    return profile;
}

void DeviceProfile::setCurrent(const DeviceProfile &profile)
{
    QMutexLocker lock(&stateMutex);
    state.chosen = profile;
    state.deviceOrientation = profile.deviceOrientation;
    state.statusBarHidden = profile.statusBarHidden;
}

void DeviceProfile::resetToScreen()
{
    QMutexLocker lock(&stateMutex);
    state = State();
}

void DeviceProfile::setDeviceOrientation(int orientation)
{
    QMutexLocker lock(&stateMutex);
    state.deviceOrientation = orientation;
}

void DeviceProfile::setStatusBarHidden(bool hidden)
{
    QMutexLocker lock(&stateMutex);
    state.statusBarHidden = hidden;
}

float DeviceProfile::systemVersionValue() const
{
    return StringScanner::floatValue(systemVersion);
}

} // namespace ZQTPlatform
