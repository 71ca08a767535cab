#include "platform/foundation/DeviceProfile.h"

#include "platform/foundation/StringScanner_p.h"
#include "platform/foundation/SystemVersion_p.h"

#include "platform/foundation/Orientation.h"

#include <QGuiApplication>
#include <QMutex>
#include <QRegularExpression>
#include <QScreen>
#include <QSysInfo>

#include <optional>

namespace ZQTPlatform {

QString systemVersionFromProductVersion(const QString &productVersion)
{
    static const QRegularExpression leadingVersion(QStringLiteral("^\\s*(\\d+(?:\\.\\d+)*)"));
    const QRegularExpressionMatch match = leadingVersion.match(productVersion);
    return match.hasMatch() ? match.captured(1) : QString::fromLatin1(currentSystemVersion);
}

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
    profile.systemVersion = systemVersionFromProductVersion(QSysInfo::productVersion());
    return profile;
}

DeviceProfile phone(const char *name, qreal width, qreal height, qreal scale, qreal statusBar,
                    const char *systemVersion, const char *machine)
{
    DeviceProfile profile;
    profile.name = QString::fromLatin1(name);
    profile.mainScreenBounds = QSizeF(width, height);
    profile.screenScale = scale;
    profile.interfaceIdiom = DeviceProfile::Idiom::Phone;
    profile.statusBarHeight = statusBar;
    profile.systemVersion = QString::fromLatin1(systemVersion);
    profile.machine = QString::fromLatin1(machine);
    return profile;
}

// "375x667" as a size; an empty size for anything else.
QSizeF sizeOfText(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^\\s*(\\d{2,5})\\s*[xX]\\s*(\\d{2,5})\\s*$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return QSizeF();
    return QSizeF(match.captured(1).toInt(), match.captured(2).toInt());
}

constexpr qreal plainStatusBarHeight = 20.0;

} // namespace

QList<DeviceProfile> DeviceProfile::phoneProfiles()
{
    return {
        phone("iPhone 4s", 320, 480, 2.0, plainStatusBarHeight, "9.3.6", "iPhone4,1"),
        phone("iPhone 8", 375, 667, 2.0, plainStatusBarHeight, "16.7.8", "iPhone10,1"),
        phone("iPhone X", 375, 812, 3.0, 44.0, "16.7.8", "iPhone10,3"),
        phone("iPhone 11", 414, 896, 2.0, 44.0, "17.5.1", "iPhone12,1"),
    };
}

std::optional<DeviceProfile> DeviceProfile::profileNamed(const QString &nameOrSize)
{
    const QList<DeviceProfile> phones = phoneProfiles();
    for (const DeviceProfile &profile : phones) {
        if (profile.name.compare(nameOrSize.trimmed(), Qt::CaseInsensitive) == 0)
            return profile;
    }
    const QSizeF size = sizeOfText(nameOrSize);
    if (size.isEmpty())
        return std::nullopt;
    for (const DeviceProfile &profile : phones) {
        if (profile.mainScreenBounds == size)
            return profile;
        if (profile.mainScreenBounds.transposed() == size)
            return profile.landscape();
    }
    // Another phone: the machine string stays empty, so the system's own is reported.
    DeviceProfile other = phone("", size.width(), size.height(), 2.0, plainStatusBarHeight, "16.7.8", "");
    other.name = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    return other;
}

DeviceProfile DeviceProfile::landscape() const
{
    DeviceProfile turned = *this;
    if (turned.mainScreenBounds.height() > turned.mainScreenBounds.width())
        turned.mainScreenBounds.transpose();
    turned.deviceOrientation = InterfaceOrientation::LandscapeRight;
    return turned;
}

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
