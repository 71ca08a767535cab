// Where the luminance of a video frame or a picture lies in memory, for the readers that work on
// frames in place rather than on converted copies.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/PixelLayout_p.h"

#include <QImage>
#include <QVideoFrame>

#include <functional>
#include <optional>

namespace ZQTPlatform {

// Whether frames of the format are read in place: a luma plane (planar YUV, Y8, Y16, P010/P016),
// packed YUV or packed RGB. Others (compressed, 10-bit planar) go through Qt's conversion.
bool readsInPlace(QVideoFrameFormat::PixelFormat format);

// Maps a frame of a format read in place and calls use with its first plane, if the plane is as
// large as the frame says; use is not called when the frame cannot be mapped or its plane is short.
void useMappedFrame(const QVideoFrame &frame, const std::function<void(const PixelLayout &)> &use);

// A picture in one of the layouts read in place (8- and 16-bit grey, RGB32, RGBX8888, RGB888,
// BGR888); the alpha of other formats is for the caller to deal with.
std::optional<PixelLayout> pictureLayout(const QImage &picture);

// The picture's luminance as a grey picture (Format_Grayscale8): copied by hand from the layouts
// above, without Qt's shared thread pool; the rarer formats (palettes, 16-bit colour, alpha) go
// through Qt's conversion. Safe on any thread.
QImage greyOfPicture(const QImage &picture);

// The frame's luminance as a grey picture of its own (Format_Grayscale8); null when the frame
// cannot be mapped or converted. Safe on any thread.
ZQT_EXPORT QImage greyOfVideoFrame(const QVideoFrame &frame);

} // namespace ZQTPlatform
