// Helpers that give a QWidget the view properties of the platform that the component uses:
// a background colour, laying out at once, and moving views in and out of the view tree.
#pragma once

#include "ZQTGlobal.h"

#include <QColor>

class QWidget;

namespace ZQTPlatform {

// Fills the widget with the colour (an invalid colour removes the fill).
ZQT_EXPORT void setBackgroundColor(QWidget *view, const QColor &color);
// The colour given by setBackgroundColor, or an invalid colour when the widget has none.
ZQT_EXPORT QColor backgroundColor(const QWidget *view);
// The colour a label (or any widget) draws its text in.
ZQT_EXPORT void setTextColor(QWidget *view, const QColor &color);
ZQT_EXPORT QColor textColor(const QWidget *view);
// Carries out every pending layout request now, then the view's own layout.
ZQT_EXPORT void layoutIfNeeded(QWidget *view);
// Puts the view on top of the superview's children and shows it (moving it there from any other
// superview). Nothing happens when either is nullptr.
ZQT_EXPORT void addSubview(QWidget *superview, QWidget *view);
// Takes the view out of the view tree, hidden; whoever keeps it owns it. nullptr is ignored.
ZQT_EXPORT void removeFromSuperview(QWidget *view);

} // namespace ZQTPlatform
