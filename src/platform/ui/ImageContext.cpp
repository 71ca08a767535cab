#include "platform/ui/ImageContext.h"

#include <QColorSpace>

#include <climits>
#include <cmath>

namespace ZQTPlatform {

namespace {

// Whole pixels covering a length in points; the tolerance keeps 50.000000001 from becoming 51.
int pixelsCovering(qreal points, qreal scale)
{
    const qreal pixels = points * scale;
    return pixels > 0 && pixels < INT_MAX ? int(std::ceil(pixels - 1e-6)) : 0;
}

QImage::Format paintableFormat(const QImage &image)
{
    switch (image.format()) {
    case QImage::Format_Invalid:
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8:
        return image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    default:
        return image.format();
    }
}

} // namespace

ImageContext::ImageContext(const QSizeF &size, bool opaque, qreal scale)
{
    const int width = pixelsCovering(size.width(), scale);
    const int height = pixelsCovering(size.height(), scale);
    if (width > 0 && height > 0) {
        m_bitmap = QImage(width, height, opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
        if (!m_bitmap.isNull())
            m_bitmap.fill(opaque ? Qt::black : Qt::transparent);
    }
    begin(scale);
    if (isValid())
        m_painter.scale(scale, scale);
}

ImageContext::ImageContext(const QSize &pixels, const QImage &formatOf)
{
    if (!pixels.isEmpty()) {
        m_bitmap = QImage(pixels, paintableFormat(formatOf));
        if (!m_bitmap.isNull()) {
            m_bitmap.fill(Qt::transparent);
            m_bitmap.setColorSpace(formatOf.colorSpace());
        }
    }
    begin(1.0);
    if (isValid()) {
        m_painter.translate(0, pixels.height());
        m_painter.scale(1, -1);
    }
}

ImageContext::~ImageContext() = default;

void ImageContext::begin(qreal scale)
{
    m_scale = scale;
    if (m_bitmap.isNull() || !m_painter.begin(&m_bitmap))
        return;
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
}

void ImageContext::drawBitmap(const QImage &bitmap, const QRectF &rect)
{
    if (!isValid() || bitmap.isNull())
        return;
    m_painter.save();
    m_painter.translate(rect.left(), rect.top() + rect.height());
    m_painter.scale(1, -1);
    m_painter.drawImage(QRectF(QPointF(0, 0), rect.size()), bitmap);
    m_painter.restore();
}

void ImageContext::drawImage(const Image &image, const QRectF &rect)
{
    if (!isValid() || image.isNull())
        return;
    const QSizeF shown = image.size() * image.scale(); // the upright picture in pixels
    m_painter.save();
    m_painter.translate(rect.topLeft());
    m_painter.scale(rect.width() / shown.width(), rect.height() / shown.height());
    m_painter.setWorldTransform(image.uprightTransform(), true);
    m_painter.drawImage(QPointF(0, 0), image.bitmap());
    m_painter.restore();
}

Image ImageContext::takeImage()
{
    if (!isValid())
        return Image();
    m_painter.end();
    return Image(m_bitmap, m_scale);
}

Image templateImage(const Image &image, const QColor &color)
{
    ImageContext context(image.size(), false, image.scale());
    if (!context.isValid())
        return Image();
    const QRectF rect(QPointF(0.0, 0.0), image.size());
    context.drawImage(image, rect);
    context.painter().setCompositionMode(QPainter::CompositionMode_SourceIn);
    context.painter().fillRect(rect, color);
    return context.takeImage();
}

} // namespace ZQTPlatform
