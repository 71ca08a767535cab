// The platform's tap recogniser: attached to a view, it calls its action after each tap (a
// left-button press and release inside the view). It watches the view's events without taking
// them, so the view and its children still get every press and release at once. One tap is
// required; taps are not counted into double taps.
#pragma once

#include "ZQTGlobal.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QWidget>
#include <functional>

namespace ZQTPlatform {

class ZQT_EXPORT TapGestureRecognizer : public QObject
{
    Q_OBJECT

public:
    // Runs on the GUI thread, once per tap, with the recogniser.
    using Action = std::function<void(TapGestureRecognizer *recognizer)>;

    explicit TapGestureRecognizer(Action action, QObject *parent = nullptr);

    // Starts watching the view (one view at a time; a second call moves the recogniser).
    void addToView(QWidget *view);
    QWidget *view() const;
    // Where the last tap ended, in the coordinates of the given view.
    QPointF locationInView(const QWidget *view) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Action m_action;
    QPointer<QWidget> m_view;
    bool m_pressed = false;
    QPointF m_location; // in m_view's coordinates
};

} // namespace ZQTPlatform
