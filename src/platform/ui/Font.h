// Fonts by name, as the platform makes them: a PostScript name (for example "DejaVuSans-Bold")
// or a full name ("DejaVu Sans Bold"), at a size in points. Found through fontconfig by exact
// name, never by nearest match.
//
// Sizes: the platform's point is a device-independent pixel, so every QFont made here carries
// its size as a pixel size (QFont::setPixelSize, rounded to whole pixels, at least 1); read it
// back with QFont::pixelSize(). Qt's own point size (1/72 inch) is never set.
#pragma once

#include "ZQTGlobal.h"

#include <QFont>
#include <QString>
#include <optional>

namespace ZQTPlatform {

class ZQT_EXPORT Font
{
public:
    // The font of that exact name, or nothing when no installed font has the name.
    static std::optional<QFont> fontWithName(const QString &name, qreal size);
    // The platform's default font at a size.
    static QFont systemFontOfSize(qreal size);
    // The font a label gets when it is given one by name at the size of its current font: that
    // font, or, when no font has the name, the platform's default label font (the default font
    // at 17 points).
    static QFont labelFontWithName(const QString &name, const QFont &current);
};

} // namespace ZQTPlatform
