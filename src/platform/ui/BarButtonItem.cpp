#include "platform/ui/BarButtonItem.h"

#include "platform/ui/ImageContext.h"

#include <QPainter>
#include <QRadialGradient>
#include <QtMath>

namespace ZQTPlatform {

namespace {
// The touch area around the image, as on the platform's bars.
constexpr int minimumItemSide = 36;
constexpr int itemHeight = 44;
constexpr int imagePadding = 12;
} // namespace

BarButtonItem::BarButtonItem(const Image &image, Style style, QWidget *parent)
    : QPushButton(parent), m_image(image), m_style(style)
{
    setFlat(true);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    renderIcon();
}

Image BarButtonItem::image() const
{
    return m_image;
}

void BarButtonItem::setImage(const Image &image)
{
    m_image = image;
    renderIcon();
    updateGeometry();
}

BarButtonItem::Style BarButtonItem::style() const
{
    return m_style;
}

QColor BarButtonItem::tintColor() const
{
    return m_tintColor;
}

void BarButtonItem::setTintColor(const QColor &color)
{
    m_tintColor = color;
    renderIcon();
}

QSize BarButtonItem::sizeHint() const
{
    const QSizeF imageSize = m_image.size();
    return QSize(qMax(minimumItemSide, qCeil(imageSize.width()) + imagePadding),
                 qMax(itemHeight, qCeil(imageSize.height())));
}

void BarButtonItem::renderIcon()
{
    m_icon = (m_tintColor.isValid() ? templateImage(m_image, m_tintColor) : m_image).uprightPixmap();
    update();
}

void BarButtonItem::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDown()) {
        // Shows the touch: a soft glow behind the image.
        const QPointF centre = QRectF(rect()).center();
        QRadialGradient glow(centre, height() * 0.5);
        glow.setColorAt(0.0, QColor(255, 255, 255, 150));
        glow.setColorAt(1.0, QColor(255, 255, 255, 0));
        painter.fillRect(rect(), glow);
    }
    if (m_icon.isNull())
        return;
    const QSizeF iconSize = m_icon.deviceIndependentSize();
    const QPointF origin((width() - iconSize.width()) / 2.0, (height() - iconSize.height()) / 2.0);
    painter.drawPixmap(origin, m_icon);
}

} // namespace ZQTPlatform
