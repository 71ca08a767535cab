// Scaling an image to a size or into a bounding box; the result is drawn upright.
// Safe on any thread.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QSizeF>

namespace ResizeCategory {

// The image drawn upright at a target size given in the bitmap's own (unrotated) frame: the
// width and height are swapped for the left/right orientations. The drawing keeps the ratio
// of the target width to the bitmap's pixel width on both axes and uses the image's scale.
// Null for a null image. Returns the image itself when the target is the bitmap's pixel size, null when no bitmap of
// that size can be made. Throws ZQTPlatform::Exception ("NSInternalInconsistencyException",
// "Invalid image orientation") for an orientation outside the eight.
ZQT_EXPORT ZQTPlatform::Image resizedImageToSize(const ZQTPlatform::Image &image, const QSizeF &size);

// The image scaled into a bounding size (given as shown, so swapped for the left/right
// orientations), keeping the aspect ratio with the smaller side rounded down. Unless
// scaleIfSmaller is set, an image strictly smaller than the box on both sides keeps its size.
ZQT_EXPORT ZQTPlatform::Image resizedImageToFitInSize(const ZQTPlatform::Image &image, const QSizeF &boundingSize,
                                                      bool scaleIfSmaller);

} // namespace ResizeCategory
