// A grey copy of a picture in which the 1-D codes already read are painted over with paper white,
// so that a barcode reader that stops at its first find can be asked again for the next code.
#pragma once

#include "platform/capture/PixelLayout_p.h"

#include <QList>
#include <QPoint>
#include <QRect>

#include <vector>

namespace ZQTPlatform {

class MaskedLuminance
{
public:
    // Copies the luminance of the picture (the byte itself in a luminance plane, BT.601 of packed
    // RGB) over the previous copy, into the memory it already holds where that is large enough.
    void copy(const PixelLayout &picture);

    // The copy as a grey picture, rows without padding.
    PixelLayout layout() const;

    // The area of the picture a 1-D code takes, given the corners of the lines it was read on
    // (rows, or columns for a code turned by 90 degrees): the code's bars are followed from the
    // middle of those lines to both sides for as long as each next line still crosses the same
    // bars, plus a margin for blur. Only the lines the reader used when nothing can be followed.
    QRect linearCodeArea(const QList<QPoint> &corners) const;

    // Paints the area (clipped to the picture) paper white.
    void paintOut(const QRect &area);

private:
    std::vector<uchar> m_pixels;
    int m_width = 0;
    int m_height = 0;
};

} // namespace ZQTPlatform
