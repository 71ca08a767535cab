// A plain item of a navigation bar: a button that shows an image as a template, every pixel it
// covers drawn in the item's tint colour, and that glows while pressed. Its action is the
// clicked() signal (touch up inside), emitted on the GUI thread. Items with a custom view are
// that view itself, handed to NavigationBar as it is. GUI thread only, like every widget.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QColor>
#include <QPixmap>
#include <QPushButton>

namespace ZQTPlatform {

class ZQT_EXPORT BarButtonItem : public QPushButton
{
    Q_OBJECT

public:
    // Numbered as the platform numbers its bar button item styles.
    enum Style { StylePlain = 0, StyleBordered = 1, StyleDone = 2 };

    explicit BarButtonItem(const Image &image, Style style = StylePlain, QWidget *parent = nullptr);

    Image image() const;
    void setImage(const Image &image);
    Style style() const;
    // The colour the image is drawn in; an invalid colour (the default) draws the image as it is.
    QColor tintColor() const;
    void setTintColor(const QColor &color);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void renderIcon();

    Image m_image;
    Style m_style;
    QColor m_tintColor;
    QPixmap m_icon; // the image as drawn, rendered again when the image or the tint changes
};

} // namespace ZQTPlatform
