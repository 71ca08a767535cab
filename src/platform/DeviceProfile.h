// What the component asks of the device it runs on: main screen bounds and scale, interface idiom,
// status bar, the device orientation value, the system version and the hardware model. A host
// or a test chooses a profile; by default the values are read from the real primary screen.
#pragma once

#include "ZQTGlobal.h"

#include <QSizeF>
#include <QString>

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

    // The mutable device state, written by the screens as the platform's would be.
    static void setDeviceOrientation(int orientation);
    static void setStatusBarHidden(bool hidden);

    // systemVersion read as a float ("8.0" gives 8.0, "16.4.1" gives 16.4).
    float systemVersionValue() const;
};

} // namespace ZQTPlatform
