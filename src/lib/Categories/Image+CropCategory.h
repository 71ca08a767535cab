// Cutting rectangles and squares out of images. Rectangles in points are in the bitmap's own
// (unrotated) frame unless said otherwise. Safe on any thread.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QRectF>
#include <QSizeF>
#include <QVariant>

namespace CropCategory {

// Every cut from a bitmap rounds its rectangle outwards to whole pixels and clips it to the
// bitmap; it gives a null image when nothing is left.

// The rectangle (points, multiplied by the image's scale) cut from the image; the result keeps
// the image's scale and orientation.
ZQT_EXPORT ZQTPlatform::Image crop(const ZQTPlatform::Image &image, const QRectF &rect);
// The same cut made from `image`; the receiver is not used.
ZQT_EXPORT ZQTPlatform::Image cropImage(const ZQTPlatform::Image &receiver, const ZQTPlatform::Image &image,
                                        const QRectF &andFrame);
// The rectangle in pixels cut from the receiver, not from `image`, which is ignored. The result
// has scale 1 and orientation up.
ZQT_EXPORT ZQTPlatform::Image crop(const ZQTPlatform::Image &receiver, const ZQTPlatform::Image &image,
                                   const QRectF &inRect);
// The rectangle in pixels cut from `image`; scale 1, orientation up. The receiver is not used.
ZQT_EXPORT ZQTPlatform::Image croppIngimageByImageName(const ZQTPlatform::Image &receiver,
                                                       const ZQTPlatform::Image &image, const QRectF &toRect);
// `image` as shown, redrawn into a transparent bitmap of the rectangle's size (points of the
// shown picture, scale 1). The full rectangle gives `image` itself. The receiver is not used.
ZQT_EXPORT ZQTPlatform::Image imageWithImage(const ZQTPlatform::Image &receiver, const ZQTPlatform::Image &image,
                                             const QRectF &cropInRect);
// An opaque square of the given width (the height is not used) at the screen's scale, the
// centre of `image` drawn over it, squeezed along its long side as well as cut. The receiver is
// not used.
ZQT_EXPORT ZQTPlatform::Image squareImageWithImage(const ZQTPlatform::Image &receiver,
                                                   const ZQTPlatform::Image &image, const QSizeF &scaledToSize);
// Does nothing.
ZQT_EXPORT void cropImageMethod(const ZQTPlatform::Image &receiver, const QVariant &, const QVariant &);

} // namespace CropCategory
