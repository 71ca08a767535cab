#include "lib/Categories/Image+fixOrientation.h"

#include "platform/ui/ImageContext.h"

#include <cmath>

namespace fixOrientation {

using ZQTPlatform::Image;
using Orientation = ZQTPlatform::Image::Orientation;

namespace {

// Turns the bitmap, drawn upright in a context whose origin is at the bottom left, into the
// orientation shown; W x H is the size shown.
QTransform uprightingTransform(Orientation orientation, qreal W, qreal H)
{
    QTransform transform;
    switch (orientation) {
    case Orientation::Down:
    case Orientation::DownMirrored:
        transform.translate(W, H);
        transform.rotateRadians(M_PI);
        break;
    case Orientation::Left:
    case Orientation::LeftMirrored:
        transform.translate(W, 0);
        transform.rotateRadians(M_PI_2);
        break;
    case Orientation::Right:
    case Orientation::RightMirrored:
        transform.translate(0, H);
        transform.rotateRadians(-M_PI_2);
        break;
    default:
        break;
    }
    switch (orientation) {
    case Orientation::UpMirrored:
    case Orientation::DownMirrored:
        transform.translate(W, 0);
        transform.scale(-1, 1);
        break;
    case Orientation::LeftMirrored:
    case Orientation::RightMirrored:
        transform.translate(H, 0);
        transform.scale(-1, 1);
        break;
    default:
        break;
    }
    return transform;
}

} // namespace

Image fixOrientation(const Image &image)
{
    if (image.imageOrientation() == Orientation::Up)
        return image;

    const qreal W = image.size().width();
    const qreal H = image.size().height();
    // The size in points becomes the bitmap's size in whole pixels (fractions dropped), so
    // images of a scale above 1 come back with fewer pixels.
    ZQTPlatform::ImageContext context(QSize(int(W), int(H)), image.bitmap());
    if (!context.isValid())
        return Image();
    context.painter().setWorldTransform(uprightingTransform(image.imageOrientation(), W, H), true);
    const QRectF drawn = Image::swapsWidthAndHeight(image.imageOrientation()) ? QRectF(0, 0, H, W)
                                                                                : QRectF(0, 0, W, H);
    context.drawBitmap(image.bitmap(), drawn);
    return context.takeImage();
}

} // namespace fixOrientation
