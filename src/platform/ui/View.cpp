#include "platform/ui/View.h"

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

void setTextColor(QWidget *view, const QColor &color)
{
    QPalette palette = view->palette();
    palette.setColor(QPalette::WindowText, color);
    view->setPalette(palette);
}

QColor textColor(const QWidget *view)
{
    return view->palette().color(QPalette::WindowText);
}

void layoutIfNeeded(QWidget *view)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    if (view && view->layout())
        view->layout()->activate();
}

void addSubview(QWidget *superview, QWidget *view)
{
    if (!superview || !view)
        return;
    if (view->parentWidget() != superview)
        view->setParent(superview);
    view->raise();
    view->show();
}

void removeFromSuperview(QWidget *view)
{
    if (!view)
        return;
    view->hide();
    view->setParent(nullptr);
}

} // namespace ZQTPlatform
