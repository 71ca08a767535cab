#include "platform/ui/TapGestureRecognizer.h"

#include <QMouseEvent>

namespace ZQTPlatform {

TapGestureRecognizer::TapGestureRecognizer(Action action, QObject *parent)
    : QObject(parent), m_action(std::move(action))
{
}

void TapGestureRecognizer::addToView(QWidget *view)
{
    if (m_view)
        m_view->removeEventFilter(this);
    m_view = view;
    m_pressed = false;
    if (view)
        view->installEventFilter(this);
}

QWidget *TapGestureRecognizer::view() const
{
    return m_view;
}

QPointF TapGestureRecognizer::locationInView(const QWidget *view) const
{
    if (!m_view || !view || view == m_view)
        return m_location;
    return view->mapFrom(m_view.data(), m_location);
}

bool TapGestureRecognizer::eventFilter(QObject *watched, QEvent *event)
{
    // GUI thread. Presses on children that they ignore reach the view here too, with positions
    // already in the view's coordinates.
    if (watched != m_view)
        return false;
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (mouse->button() != Qt::LeftButton)
        return false;
    const bool inside = m_view->rect().contains(mouse->position().toPoint());
    if (event->type() == QEvent::MouseButtonPress) {
        m_pressed = inside;
    } else if (std::exchange(m_pressed, false) && inside) {
        m_location = mouse->position();
        if (m_action)
            m_action(this);
    }
    return false;
}

} // namespace ZQTPlatform
