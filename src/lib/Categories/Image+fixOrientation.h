// Baking an image's orientation into its pixels. Safe on any thread.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

namespace fixOrientation {

// The image redrawn upright: a bitmap of the image's size in points taken as pixels, in the
// source bitmap's pixel format and colour space, scale 1, orientation up. An image that is
// already up is returned itself.
ZQT_EXPORT ZQTPlatform::Image fixOrientation(const ZQTPlatform::Image &image);

} // namespace fixOrientation
