// Lays out the children of a view by the constraints the view holds. One per view that holds
// constraints; it lays the view's subviews out when the view is resized or asked to lay out.
#pragma once

#include <QObject>

class QWidget;

namespace ZQTPlatform {

class ConstraintLayout : public QObject
{
    Q_OBJECT

public:
    // Gives view its constraint layout, unless it has one.
    static void attach(QWidget *view);
    // Asks view to lay out again on the next layout pass (a posted layout request, which
    // layoutIfNeeded carries out at once). Nothing for a null view or one without constraint layout.
    static void setNeedsLayout(QWidget *view);

    // Places every child of the view whose geometry its constraints decide, then lays out those
    // children that hold constraints of their own.
    void layoutSubviews();

protected:
    // GUI thread: the view's resize and layout request events.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit ConstraintLayout(QWidget *view);
    static ConstraintLayout *of(const QWidget *view);

    QWidget *m_view;
};

} // namespace ZQTPlatform
