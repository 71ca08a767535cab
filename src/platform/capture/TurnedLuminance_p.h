// A turned, resampled copy of part of a frame's luminance, so that a barcode reader that scans
// straight rows can read a label held at a slant.
#pragma once

#include "platform/capture/PixelLayout_p.h"

#include <QRectF>
#include <QTransform>

#include <vector>

namespace ZQTPlatform {

struct TurnedLuminance
{
    std::vector<uchar> pixels; // width x height, rows without padding
    int width = 0;
    int height = 0;
    QTransform toFrame;        // its pixel coordinates to frame pixels
};

// The luminance of the frame rectangle band, turned by degrees about the band's centre (a label
// tilted clockwise by that angle comes out level), one sample every step frame pixels, with
// bilinear interpolation. Samples past the frame's edge repeat the edge.
TurnedLuminance turnedLuminance(const PixelLayout &frame, const QRectF &band, double degrees, int step);

} // namespace ZQTPlatform
