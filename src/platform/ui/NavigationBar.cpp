#include "platform/ui/NavigationBar.h"
#include "platform/ui/View.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace ZQTPlatform {

namespace {
const QColor defaultBarColor(247, 247, 247);
constexpr int translucentAlpha = 235;
constexpr int itemMargin = 8;
} // namespace

NavigationBar::NavigationBar(QWidget *parent)
    : QWidget(parent), m_titleLabel(new QLabel(this)), m_leftBox(new QHBoxLayout),
      m_rightBox(new QHBoxLayout)
{
    setFixedHeight(DefaultHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // Titles come from hosts and configuration: shown as written, never rendered as markup.
    m_titleLabel->setTextFormat(Qt::PlainText);
    m_titleLabel->setAlignment(Qt::AlignCenter);
    m_titleLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    QFont font = m_titleLabel->font();
    font.setBold(true);
    m_titleLabel->setFont(font);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(itemMargin, 0, itemMargin, 0);
    row->addLayout(m_leftBox);
    row->addStretch(1);
    row->addLayout(m_rightBox);
}

QString NavigationBar::title() const
{
    return m_titleLabel->text();
}

void NavigationBar::setTitle(const QString &title)
{
    m_titleLabel->setText(title);
}

QColor NavigationBar::titleColor() const
{
    return textColor(m_titleLabel);
}

void NavigationBar::setTitleColor(const QColor &color)
{
    ZQTPlatform::setTextColor(m_titleLabel, color);
}

QFont NavigationBar::titleFont() const
{
    return m_titleLabel->font();
}

void NavigationBar::setTitleFont(const QFont &font)
{
    m_titleLabel->setFont(font);
}

QColor NavigationBar::barTintColor() const
{
    return m_barTintColor;
}

void NavigationBar::setBarTintColor(const QColor &color)
{
    m_barTintColor = color;
    update();
}

bool NavigationBar::isTranslucent() const
{
    return m_translucent;
}

void NavigationBar::setTranslucent(bool translucent)
{
    m_translucent = translucent;
    update();
}

int NavigationBar::barStyle() const
{
    return m_barStyle;
}

void NavigationBar::setBarStyle(int style)
{
    m_barStyle = style;
}

QList<QWidget *> NavigationBar::leftItems() const
{
    return m_leftItems;
}

void NavigationBar::setLeftItems(const QList<QWidget *> &items)
{
    replaceItems(m_leftBox, m_leftItems, items);
}

QList<QWidget *> NavigationBar::rightItems() const
{
    return m_rightItems;
}

void NavigationBar::setRightItems(const QList<QWidget *> &items)
{
    replaceItems(m_rightBox, m_rightItems, items);
}

void NavigationBar::replaceItems(QHBoxLayout *box, QList<QWidget *> &current, const QList<QWidget *> &items)
{
    for (QWidget *item : std::as_const(current)) {
        box->removeWidget(item);
        if (!items.contains(item))
            delete item;
    }
    current = items;
    for (QWidget *item : items) {
        if (!item->layout() && !item->sizeHint().isValid()) {
            // A custom view keeps its frame's size, widened to show the subviews that reach
            // past it (the platform does not clip them to the view).
            const QRect reach = item->rect().united(item->childrenRect());
            item->setFixedSize(reach.right() + 1, reach.bottom() + 1);
        }
        box->addWidget(item, 0, Qt::AlignVCenter);
    }
}

void NavigationBar::paintEvent(QPaintEvent *)
{
    QColor color = m_barTintColor.isValid() ? m_barTintColor : defaultBarColor;
    if (m_translucent)
        color.setAlpha(qMin(color.alpha(), translucentAlpha));
    QPainter painter(this);
    painter.fillRect(rect(), color);
}

void NavigationBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The title is centred on the whole bar, whatever the items beside it take.
    m_titleLabel->setGeometry(rect());
    m_titleLabel->lower();
}

} // namespace ZQTPlatform
