// The looks of a push button as the platform's button keeps them: a title colour and a
// background image for each of the normal and highlighted (pressed) states, and its layer's
// corner radius, border and clipping. They are stored on the button; the background image is
// stretched over the button (cut to the rounded corners while the button clips to its bounds),
// the title colours and the border are drawn through its style sheet.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

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
    // A pressed button without a highlighted image shows its normal one.
    static void setBackgroundImage(QPushButton *button, const Image &image, State state);
    // The null image when none was set for the state.
    static Image backgroundImage(const QPushButton *button, State state);

    static void setCornerRadius(QPushButton *button, qreal radius);
    static qreal cornerRadius(const QPushButton *button);
    static void setBorderWidth(QPushButton *button, qreal width);
    static qreal borderWidth(const QPushButton *button);
    // An invalid colour draws no border.
    static void setBorderColor(QPushButton *button, const QColor &color);
    static QColor borderColor(const QPushButton *button);
    static void setClipsToBounds(QPushButton *button, bool clips);
    static bool clipsToBounds(const QPushButton *button);
};

} // namespace ZQTPlatform
