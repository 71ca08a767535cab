#include "lib/Categories/Image+CropCategory.h"

#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/ImageContext.h"

namespace CropCategory {

using ZQTPlatform::Image;

namespace {

QImage subBitmap(const QImage &bitmap, const QRectF &pixels)
{
    const QRect cut = pixels.normalized().toAlignedRect().intersected(bitmap.rect());
    return cut.isEmpty() ? QImage() : bitmap.copy(cut);
}

Image cropInPoints(const Image &image, const QRectF &rect)
{
    const qreal s = image.scale();
    const QRectF pixels(rect.x() * s, rect.y() * s, rect.width() * s, rect.height() * s);
    return Image(subBitmap(image.bitmap(), pixels), s, image.imageOrientation());
}

Image cropInPixels(const Image &image, const QRectF &rect)
{
    return Image(subBitmap(image.bitmap(), rect));
}

} // namespace

Image crop(const Image &image, const QRectF &rect)
{
    return cropInPoints(image, rect);
}

Image cropImage(const Image &, const Image &image, const QRectF &andFrame)
{
    return cropInPoints(image, andFrame);
}

Image crop(const Image &receiver, const Image &, const QRectF &inRect)
{
    return cropInPixels(receiver, inRect);
}

Image croppIngimageByImageName(const Image &, const Image &image, const QRectF &toRect)
{
    return cropInPixels(image, toRect);
}

Image imageWithImage(const Image &, const Image &image, const QRectF &cropInRect)
{
    if (cropInRect.topLeft() == QPointF(0, 0) && cropInRect.size() == image.size())
        return image;
    ZQTPlatform::ImageContext context(cropInRect.size(), false, 1.0);
    context.drawImage(image, QRectF(-cropInRect.topLeft(), image.size()));
    return context.takeImage();
}

Image squareImageWithImage(const Image &, const Image &image, const QSizeF &scaledToSize)
{
    const qreal n = scaledToSize.width();
    const qreal W = image.size().width();
    const qreal H = image.size().height();
    qreal ratio;
    qreal delta;
    QPointF offset;
    if (W > H) {
        ratio = n / W;
        delta = ratio * W - ratio * H;
        offset = QPointF(delta / 2, 0);
    } else {
        ratio = n / H;
        delta = ratio * H - ratio * W;
        offset = QPointF(0, delta / 2);
    }
    // Both sides grow by delta, so the picture fills the square but loses its aspect ratio.
    const QRectF clip(-offset.x(), -offset.y(), ratio * W + delta, ratio * H + delta);

    ZQTPlatform::ImageContext context(QSizeF(n, n), true, ZQTPlatform::DeviceProfile::current().screenScale);
    if (context.isValid() && !image.isNull()) {
        context.painter().setClipRect(clip);
        context.drawImage(image, clip);
    }
    return context.takeImage();
}

void cropImageMethod(const Image &, const QVariant &, const QVariant &)
{
}

} // namespace CropCategory
