// Where the pixels of a frame lie in memory, the luminance of one pixel and a grey copy of a
// frame, for the code that reads frames in place.
#pragma once

#include <QtGlobal>

namespace ZQTPlatform {

// A luminance plane has its three channel offsets at 0; packed RGB names the byte of each
// channel within a pixel.
struct PixelLayout
{
    const uchar *data = nullptr;
    int width = 0;
    int height = 0;
    int rowStride = 0;
    int pixelStride = 1;
    int red = 0;
    int green = 0;
    int blue = 0;

    bool isGrey() const { return red == 0 && green == 0 && blue == 0; }
};

// Luminance of one pixel: the byte itself in a luminance plane, else BT.601 in 1/1024ths.
template<bool grey>
inline int luminanceAt(const PixelLayout &frame, int x, int y)
{
    const uchar *pixel = frame.data + qsizetype(y) * frame.rowStride + qsizetype(x) * frame.pixelStride;
    if constexpr (grey)
        return pixel[0];
    else
        return (306 * pixel[frame.red] + 601 * pixel[frame.green] + 117 * pixel[frame.blue] + 512) >> 10;
}

// Copies the picture's luminance (the byte itself in a luminance plane, BT.601 of packed RGB)
// to out: height rows of width bytes, each outRowStride bytes after the one before.
void copyLuminance(const PixelLayout &picture, uchar *out, qsizetype outRowStride);

} // namespace ZQTPlatform
