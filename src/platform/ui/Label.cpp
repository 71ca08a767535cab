#include "platform/ui/Label.h"

#include <QPainter>
#include <QStyle>
#include <QTextDocument>

namespace ZQTPlatform {

namespace {

// The step by which a line's font shrinks until the line fits, in points.
constexpr qreal shrinkStep = 0.5;

} // namespace

Label::Label(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

bool Label::adjustsFontSizeToFitWidth() const
{
    return m_adjustsFontSizeToFitWidth;
}

void Label::setAdjustsFontSizeToFitWidth(bool adjusts)
{
    m_adjustsFontSizeToFitWidth = adjusts;
    update();
}

qreal Label::minimumScaleFactor() const
{
    return m_minimumScaleFactor;
}

void Label::setMinimumScaleFactor(qreal factor)
{
    m_minimumScaleFactor = qBound(0.0, factor, 1.0);
    update();
}

QFont Label::fittedFont(int width) const
{
    QFont fitted = font();
    if (!m_adjustsFontSizeToFitWidth || fitted.pointSizeF() <= 0)
        return fitted;
    const qreal smallest = fitted.pointSizeF() * m_minimumScaleFactor;
    while (fitted.pointSizeF() - shrinkStep >= smallest && QFontMetrics(fitted).horizontalAdvance(text()) > width)
        fitted.setPointSizeF(fitted.pointSizeF() - shrinkStep);
    return fitted;
}

void Label::paintEvent(QPaintEvent *event)
{
    const QRect area = contentsRect();
    const bool plainLine = !wordWrap() && !text().isEmpty() && textFormat() != Qt::RichText
        && !(textFormat() == Qt::AutoText && Qt::mightBeRichText(text()));
    if (!plainLine || fontMetrics().horizontalAdvance(text()) <= area.width()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setFont(fittedFont(area.width()));
    const QString elided = painter.fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
    style()->drawItemText(&painter, area, int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
                          isEnabled(), elided, foregroundRole());
}

} // namespace ZQTPlatform
