// The free-space rule of ZQTDeviceUtils, apart from the disk it is asked about.
#pragma once

#include "ZQTGlobal.h"

#include <QtGlobal>

namespace ZQTDeviceUtilsPrivate {

// True when freeBytes > imageBytes + 1024, without wrapping around for huge sizes.
ZQT_EXPORT bool hasRoomForImage(quint64 imageBytes, quint64 freeBytes);

} // namespace ZQTDeviceUtilsPrivate
