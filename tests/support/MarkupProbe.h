// Whether a label renders text as markup: a text that draws pure green only when it is read as
// rich text, and a look at the label's pixels.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QWidget>

inline QString greenMarkup()
{
    return QStringLiteral("<font color=\"#00ff00\">GREEN</font>");
}

// True when the widget, drawn now, shows pure green anywhere.
inline bool drawsGreen(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.green() > 200 && c.red() < 60 && c.blue() < 60)
                return true;
        }
    }
    return false;
}
