// The system version the default device profile reports, read from what the system says.
#pragma once

#include "ZQTGlobal.h"

#include <QString>

namespace ZQTPlatform {

// The version used when the system names none: a current one. Alerts need 8.0 and the bundle's
// images take the current path above 8.0; every system Qt 6 runs on is current for them.
inline constexpr char currentSystemVersion[] = "17.0";

// The leading dotted number of a product version ("12" of Debian 12, "22.04" of Ubuntu 22.04,
// "7.1" of "7.1 beta"), or currentSystemVersion when it starts with none ("unknown", "n/a",
// "rolling", empty).
ZQT_EXPORT QString systemVersionFromProductVersion(const QString &productVersion);

} // namespace ZQTPlatform
