#include "platform/View.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLayout>
#include <QWidget>

namespace ZQTPlatform {

void setBackgroundColor(QWidget *view, const QColor &color)
{
    QPalette palette = view->palette();
    palette.setColor(QPalette::Window, color);
    view->setPalette(palette);
    view->setAutoFillBackground(color.isValid());
}

QColor backgroundColor(const QWidget *view)
{
    return view->autoFillBackground() ? view->palette().color(QPalette::Window) : QColor();
}

void layoutIfNeeded(QWidget *view)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    if (view && view->layout())
        view->layout()->activate();
}

} // namespace ZQTPlatform
