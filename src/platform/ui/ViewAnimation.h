// A view's alpha as the platform has it (1 opaque, 0 invisible; the view and its subviews are
// drawn through a QGraphicsOpacityEffect), set at once or animated over a duration with a
// completion. Each change of the alpha repaints the view with all its subviews in the window.
// GUI thread only.
#pragma once

#include "ZQTGlobal.h"

#include <functional>

class QWidget;

namespace ZQTPlatform {

// Runs on the GUI thread when the animation ends: finished is false when a later alpha change
// of the same view cut it short. Not called when the view is deleted first.
using AlphaCompletion = std::function<void(bool finished)>;

// 1.0 for a view never given an alpha.
ZQT_EXPORT qreal alpha(const QWidget *view);
// Sets the alpha at once, cutting a running alpha animation of the view short.
ZQT_EXPORT void setAlpha(QWidget *view, qreal alpha);
// Moves the alpha from its present value to the target over the duration (eased in and out),
// cutting a running alpha animation of the view short; the completion runs at the end.
ZQT_EXPORT void animateAlpha(QWidget *view, qreal alpha, double seconds, AlphaCompletion completion = {});

} // namespace ZQTPlatform
