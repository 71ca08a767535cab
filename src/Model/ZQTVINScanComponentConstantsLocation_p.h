// The pieces of the location stamp that do not depend on the clock or on a position source:
// the text for a given moment and zone, and the font search of the drawing.
#pragma once

#include "ZQTGlobal.h"

#include <QDateTime>
#include <QFont>
#include <QString>
#include <QTimeZone>

namespace ZQTLocationStampPrivate {

// "<date> <zone>\nLat: <lat>  Long: <lon>" for the moment in the zone (see
// ZQTVINScanComponentConstants::getTextOverlayWithLatitude).
ZQT_EXPORT QString stampText(const QDateTime &at, const QTimeZone &zone, float latitude, float longitude);
// The configured bold font at a size in points (the default font made bold when the configured
// and fallback names name no installed font).
ZQT_EXPORT QFont stampFont(qreal size);
// The first size from 9 in steps of 2 at which the text is wider than 33 % of the image width;
// 9 for a text with no width.
ZQT_EXPORT qreal stampFontSize(const QString &text, qreal imageWidth);

} // namespace ZQTLocationStampPrivate
