// What the component asks of the device it runs on: main screen bounds and scale, interface idiom,
// status bar, the device orientation value, the system version and the hardware model. A host
// or a test chooses a profile; by default the values are read from the real primary screen.
#pragma once

#include "ZQTGlobal.h"

#include <QList>
#include <QSizeF>
#include <QString>

#include <optional>

namespace ZQTPlatform {

struct ZQT_EXPORT DeviceProfile
{
    // Numbered as the platform numbers its interface idioms.
    enum class Idiom { Unspecified = -1, Phone = 0, Pad = 1 };

    QString name;                 // for display, e.g. "iPhone X"
    QSizeF mainScreenBounds;      // points
    qreal screenScale = 1.0;      // pixels per point of the main screen
    Idiom interfaceIdiom = Idiom::Unspecified;
    qreal statusBarHeight = 0.0;  // points
    bool statusBarHidden = false;
    int deviceOrientation = 1;    // the device's "orientation" value: 1 portrait, 3 and 4 landscape
    QString systemVersion;        // e.g. "16.4"; compared as a decimal number
    QString machine;              // hardware model string, e.g. "iPhone7,2"; empty: the system's (uname)

    // The profile in use now.
    static DeviceProfile current();
    // Chooses the profile in use.
    static void setCurrent(const DeviceProfile &profile);
    // Goes back to the real screen: its size, no idiom, a 0-point status bar, the OS version.
    static void resetToScreen();

    // The named phones a host or a test can imitate, each in portrait: "iPhone 4s" (320 x 480),
    // "iPhone 8" (375 x 667), "iPhone X" (375 x 812) and "iPhone 11" (414 x 896).
    static QList<DeviceProfile> phoneProfiles();
    // The named phone of that name (any case) or of that size written "WxH" in points; a size
    // written "HxW" gives the phone in landscape. Another valid size gives an unnamed phone of
    // that size with a 20-point status bar. Nothing for anything else.
    static std::optional<DeviceProfile> profileNamed(const QString &nameOrSize);
    // The same device held in landscape: bounds transposed, device orientation 3.
    DeviceProfile landscape() const;

    // The mutable device state, written by the screens as the platform's would be.
    static void setDeviceOrientation(int orientation);
    static void setStatusBarHidden(bool hidden);

    // systemVersion read as a float ("8.0" gives 8.0, "16.4.1" gives 16.4).
    float systemVersionValue() const;
};

} // namespace ZQTPlatform
