#include "platform/capture/TurnedLuminance_p.h"

#include <algorithm>
#include <cmath>

namespace ZQTPlatform {

namespace {

// Fills the rows of turned, walking each in 16.16 fixed point: one sample is a constant move in the frame.
template<bool grey>
void resample(const PixelLayout &frame, TurnedLuminance &turned)
{
    constexpr int one = 1 << 16;
    const QPointF across = turned.toFrame.map(QPointF(1, 0)) - turned.toFrame.map(QPointF(0, 0));
    const int dx = int(std::lround(across.x() * one));
    const int dy = int(std::lround(across.y() * one));
    const int maxX = (frame.width - 1) * one - 1;
    const int maxY = (frame.height - 1) * one - 1;
    for (int row = 0; row < turned.height; ++row) {
        const QPointF start = turned.toFrame.map(QPointF(0, row));
        int x = int(std::lround(start.x() * one));
        int y = int(std::lround(start.y() * one));
        uchar *out = turned.pixels.data() + size_t(row) * turned.width;
        for (int column = 0; column < turned.width; ++column, x += dx, y += dy) {
            const int cx = std::clamp(x, 0, maxX);
            const int cy = std::clamp(y, 0, maxY);
            const int left = cx >> 16;
            const int top = cy >> 16;
            const int fx = (cx & (one - 1)) >> 8; // 0..255
            const int fy = (cy & (one - 1)) >> 8;
            const int upper = luminanceAt<grey>(frame, left, top) * (256 - fx) + luminanceAt<grey>(frame, left + 1, top) * fx;
            const int lower
                = luminanceAt<grey>(frame, left, top + 1) * (256 - fx) + luminanceAt<grey>(frame, left + 1, top + 1) * fx;
            out[column] = uchar((upper * (256 - fy) + lower * fy + (1 << 15)) >> 16);
        }
    }
}

} // namespace

TurnedLuminance turnedLuminance(const PixelLayout &frame, const QRectF &band, double degrees, int step)
{
    TurnedLuminance turned;
    if (frame.width < 2 || frame.height < 2 || step < 1)
        return turned;
    turned.width = int(band.width()) / step;
    turned.height = int(band.height()) / step;
    turned.toFrame.translate(band.center().x(), band.center().y());
    turned.toFrame.rotate(degrees);
    turned.toFrame.translate(-band.width() / 2, -band.height() / 2);
    turned.toFrame.scale(step, step);
    turned.pixels.resize(size_t(std::max(0, turned.width)) * std::max(0, turned.height));

    if (frame.isGrey())
        resample<true>(frame, turned);
    else
        resample<false>(frame, turned);
    return turned;
}

} // namespace ZQTPlatform
