#include "lib/Categories/Image+ResizeCategory.h"

#include "platform/foundation/Exception.h"
#include "platform/ui/ImageContext.h"

#include <cmath>
#include <utility>

namespace ResizeCategory {

using ZQTPlatform::Image;
using Orientation = ZQTPlatform::Image::Orientation;

namespace {

constexpr qreal Pi = M_PI;
constexpr qreal HalfPi = M_PI_2;
constexpr qreal ThreeHalvesPi = 4.71238898038469;

// The transform that turns the bitmap, drawn at (0, 0, w, h) with the context's axes set up
// by the caller, into the orientation shown.
QTransform orientationTransform(Orientation orientation, qreal w, qreal h)
{
    QTransform transform;
    switch (orientation) {
    case Orientation::Up:
        break;
    case Orientation::Down:
        transform.translate(w, h);
        transform.rotateRadians(Pi);
        break;
    case Orientation::Left:
        transform.translate(0, w);
        transform.rotateRadians(ThreeHalvesPi);
        break;
    case Orientation::Right:
        transform.translate(h, 0);
        transform.rotateRadians(HalfPi);
        break;
    case Orientation::UpMirrored:
        transform.translate(w, 0);
        transform.scale(-1, 1);
        break;
    case Orientation::DownMirrored:
        transform.translate(0, h);
        transform.scale(1, -1);
        break;
    case Orientation::LeftMirrored:
        transform.translate(h, w);
        transform.scale(-1, 1);
        transform.rotateRadians(ThreeHalvesPi);
        break;
    case Orientation::RightMirrored:
        transform.scale(-1, 1);
        transform.rotateRadians(HalfPi);
        break;
    default:
        throw ZQTPlatform::Exception(QStringLiteral("NSInternalInconsistencyException"),
                                     QStringLiteral("Invalid image orientation"));
    }
    return transform;
}

} // namespace

Image resizedImageToSize(const Image &image, const QSizeF &size)
{
    if (image.isNull())
        return Image();
    const qreal w = image.bitmap().width();
    const qreal h = image.bitmap().height();
    if (QSizeF(w, h) == size)
        return image;

    const qreal ratio = size.width() / w;
    const QTransform transform = orientationTransform(image.imageOrientation(), w, h);
    const QSizeF target = Image::swapsWidthAndHeight(image.imageOrientation()) ? size.transposed() : size;

    ZQTPlatform::ImageContext context(target, false, image.scale());
    if (!context.isValid())
        return Image();
    QPainter &painter = context.painter();
    // The bitmap is drawn with its first row at the larger y; the negative factor turns it back.
    // Only left and right take the first branch; their mirrored forms go through the second,
    // which places non-square pictures of those two orientations off by (h - w) x ratio.
    if (image.imageOrientation() == Orientation::Left || image.imageOrientation() == Orientation::Right) {
        painter.scale(-ratio, ratio);
        painter.translate(-h, 0);
    } else {
        painter.scale(ratio, -ratio);
        painter.translate(0, -h);
    }
    painter.setWorldTransform(transform, true);
    context.drawBitmap(image.bitmap(), QRectF(0, 0, w, h));
    return context.takeImage();
}

Image resizedImageToFitInSize(const Image &image, const QSizeF &boundingSize, bool scaleIfSmaller)
{
    const qreal w = image.bitmap().width();
    const qreal h = image.bitmap().height();
    QSizeF bounds = boundingSize;
    if (Image::swapsWidthAndHeight(image.imageOrientation()))
        bounds.transpose();

    QSizeF target;
    if (!scaleIfSmaller && bounds.width() > w && bounds.height() > h) {
        target = QSizeF(w, h);
    } else {
        const qreal widthRatio = bounds.width() / w;
        const qreal heightRatio = bounds.height() / h;
        if (heightRatio > widthRatio)
            target = QSizeF(bounds.width(), std::floor(float(widthRatio * h)));
        else
            target = QSizeF(std::floor(float(heightRatio * w)), bounds.height());
    }
    return resizedImageToSize(image, target);
}

} // namespace ResizeCategory
