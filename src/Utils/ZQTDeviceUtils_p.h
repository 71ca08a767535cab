// The free-space rule of ZQTDeviceUtils, apart from the disk it is asked about.
#pragma once

#include "ZQTGlobal.h"

#include <QImage>
#include <QtGlobal>

namespace ZQTDeviceUtilsPrivate {

// True when freeBytes > imageBytes + 1024, without wrapping around for huge sizes.
ZQT_EXPORT bool hasRoomForImage(quint64 imageBytes, quint64 freeBytes);
// At least the length of the bitmap's PNG encoding, found without encoding it.
ZQT_EXPORT quint64 pngLengthBound(const QImage &bitmap);

} // namespace ZQTDeviceUtilsPrivate
