// Fonts by name, as the platform makes them: a PostScript name (for example "DejaVuSans-Bold")
// or a full name, at a size in points (device-independent pixels). Found through fontconfig by
// exact name, never by nearest match.
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
};

} // namespace ZQTPlatform
