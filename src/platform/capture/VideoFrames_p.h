// Conversions between pictures and video frames that the capture classes share. Frames are
// rendered straight from the mapped planes of the YUV formats that the video sources deliver
// (YUV420P, YV12, NV12, NV21, Y8), and through Qt's own conversion in the other formats.
#pragma once

#include "ZQTGlobal.h"

#include <QImage>
#include <QRectF>
#include <QSize>
#include <QVideoFrame>

namespace ZQTPlatform {

// A YUV420P frame with the picture (full-range BT.601; odd sizes are cropped to even ones).
ZQT_EXPORT QVideoFrame videoFrameFromImage(const QImage &image);

// A frame of its own with the same pixels (copies share nothing, so a sink sees a new frame).
ZQT_EXPORT QVideoFrame copyOfVideoFrame(const QVideoFrame &frame);

// The part source (in frame pixels) of the frame, scaled to size by nearest pixel, as an RGB32
// picture. Null for an invalid frame or an empty size. Safe on any thread.
ZQT_EXPORT QImage renderVideoFrame(const QVideoFrame &frame, const QRectF &source, const QSize &size);

// The whole frame at its own size, as an RGB32 picture. Safe on any thread.
ZQT_EXPORT QImage imageFromVideoFrame(const QVideoFrame &frame);

} // namespace ZQTPlatform
