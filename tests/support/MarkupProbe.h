// Whether a label renders text as markup: a text that draws pure green only when it is read as
// rich text, and a look at the label's pixels.
#pragma once

#include "support/TestData.h"

#include <QString>
#include <QWidget>

inline QString greenMarkup()
{
    return QStringLiteral("<font color=\"#00ff00\">GREEN</font>");
}

// True when the widget, drawn now, shows pure green anywhere.
inline bool drawsGreen(QWidget *widget)
{
    return TestData::countPixels(widget->grab().toImage(),
                                 [](const QColor &c) { return c.green() > 200 && c.red() < 60 && c.blue() < 60; }) > 0;
}
