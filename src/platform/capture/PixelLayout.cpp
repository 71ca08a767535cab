#include "platform/capture/PixelLayout_p.h"

#include <cstring>

namespace ZQTPlatform {

namespace {

template<bool grey>
void copyRows(const PixelLayout &picture, uchar *out, qsizetype outRowStride)
{
    for (int y = 0; y < picture.height; ++y, out += outRowStride) {
        if (grey && picture.pixelStride == 1) {
            std::memcpy(out, picture.data + qsizetype(y) * picture.rowStride, size_t(picture.width));
            continue;
        }
        for (int x = 0; x < picture.width; ++x)
            out[x] = uchar(luminanceAt<grey>(picture, x, y));
    }
}

} // namespace

void copyLuminance(const PixelLayout &picture, uchar *out, qsizetype outRowStride)
{
    if (picture.isGrey())
        copyRows<true>(picture, out, outRowStride);
    else
        copyRows<false>(picture, out, outRowStride);
}

} // namespace ZQTPlatform
