// Helpers that give a QWidget the view properties of the platform that the component uses:
// a background colour and laying out at once.
#pragma once

#include "ZQTGlobal.h"

#include <QColor>

class QWidget;

namespace ZQTPlatform {

// Fills the widget with the colour (an invalid colour removes the fill).
ZQT_EXPORT void setBackgroundColor(QWidget *view, const QColor &color);
// The colour given by setBackgroundColor, or an invalid colour when the widget has none.
ZQT_EXPORT QColor backgroundColor(const QWidget *view);
// Carries out every pending layout request now, then the view's own layout.
ZQT_EXPORT void layoutIfNeeded(QWidget *view);

} // namespace ZQTPlatform
