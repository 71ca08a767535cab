#include "platform/Label.h"

#include <QPainter>
#include <QStyle>
#include <QTextDocument>

namespace ZQTPlatform {

Label::Label(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
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
    const QString elided = fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
    style()->drawItemText(&painter, area, int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
                          isEnabled(), elided, foregroundRole());
}

} // namespace ZQTPlatform
