// The looks of a push button as the platform's button keeps them: a title colour and a
// background colour for each of the normal and highlighted (pressed) states, and its layer's
// corner radius, border and clipping. They are stored on the button and drawn through its
// style sheet; the corners are rounded only while the button clips to its bounds.
#pragma once

#include "ZQTGlobal.h"

#include <QColor>

class QPushButton;

namespace ZQTPlatform {

class ZQT_EXPORT ButtonStyle
{
public:
    enum class State { Normal, Highlighted };

    ButtonStyle() = delete;

    static void setTitleColor(QPushButton *button, const QColor &color, State state);
    // Invalid when none was set for the state.
    static QColor titleColor(const QPushButton *button, State state);
    static void setBackgroundColor(QPushButton *button, const QColor &color, State state);
    static QColor backgroundColor(const QPushButton *button, State state);

    static void setCornerRadius(QPushButton *button, qreal radius);
    static qreal cornerRadius(const QPushButton *button);
    // An invalid colour draws no border.
    static void setBorder(QPushButton *button, qreal width, const QColor &color);
    static qreal borderWidth(const QPushButton *button);
    static QColor borderColor(const QPushButton *button);
    static void setClipsToBounds(QPushButton *button, bool clips);
    static bool clipsToBounds(const QPushButton *button);
};

} // namespace ZQTPlatform
