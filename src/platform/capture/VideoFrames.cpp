#include "platform/capture/VideoFrames_p.h"

#include <QVideoFrameFormat>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace ZQTPlatform {

namespace {

uchar clampToByte(int value)
{
    return uchar(std::clamp(value, 0, 255));
}

// Where the chroma of a mapped YUV frame lives: one or two planes, with a step between samples.
struct ChromaPlanes
{
    const uchar *u = nullptr;
    const uchar *v = nullptr;
    int bytesPerLine = 0;
    int step = 1;
};

bool chromaPlanes(const QVideoFrame &frame, ChromaPlanes *planes)
{
    switch (frame.pixelFormat()) {
    case QVideoFrameFormat::Format_YUV420P:
        *planes = {frame.bits(1), frame.bits(2), frame.bytesPerLine(1), 1};
        return true;
    case QVideoFrameFormat::Format_YV12:
        *planes = {frame.bits(2), frame.bits(1), frame.bytesPerLine(1), 1};
        return true;
    case QVideoFrameFormat::Format_NV12:
        *planes = {frame.bits(1), frame.bits(1) + 1, frame.bytesPerLine(1), 2};
        return true;
    case QVideoFrameFormat::Format_NV21:
        *planes = {frame.bits(1) + 1, frame.bits(1), frame.bytesPerLine(1), 2};
        return true;
    case QVideoFrameFormat::Format_Y8:
        *planes = {};
        return true;
    default:
        return false;
    }
}

QRgb yuvToRgb(int y, int u, int v)
{
    const int d = u - 128;
    const int e = v - 128;
    return qRgb(clampToByte(y + ((91881 * e) >> 16)),
                clampToByte(y - ((22554 * d + 46802 * e) >> 16)),
                clampToByte(y + ((116130 * d) >> 16)));
}

// Samples a mapped YUV frame; returns false when the format is not one read directly.
bool renderMappedYuv(const QVideoFrame &frame, const QRectF &source, QImage *out)
{
    ChromaPlanes chroma;
    if (!chromaPlanes(frame, &chroma))
        return false;
    const uchar *luma = frame.bits(0);
    const int lumaStride = frame.bytesPerLine(0);
    const int frameWidth = frame.width();
    const int frameHeight = frame.height();
    const double sx = source.width() / out->width();
    const double sy = source.height() / out->height();
    std::vector<int> columns(size_t(out->width()));
    for (int x = 0; x < out->width(); ++x)
        columns[size_t(x)] = std::clamp(int(source.x() + (x + 0.5) * sx), 0, frameWidth - 1);
    for (int y = 0; y < out->height(); ++y) {
        const int row = std::clamp(int(source.y() + (y + 0.5) * sy), 0, frameHeight - 1);
        const uchar *lumaRow = luma + qsizetype(row) * lumaStride;
        const qsizetype chromaRow = qsizetype(row / 2) * chroma.bytesPerLine;
        auto *line = reinterpret_cast<QRgb *>(out->scanLine(y));
        for (int x = 0; x < out->width(); ++x) {
            const int column = columns[size_t(x)];
            const int yValue = lumaRow[column];
            if (!chroma.u) {
                line[x] = qRgb(yValue, yValue, yValue);
                continue;
            }
            const qsizetype at = chromaRow + qsizetype(column / 2) * chroma.step;
            line[x] = yuvToRgb(yValue, chroma.u[at], chroma.v[at]);
        }
    }
    return true;
}

} // namespace

QVideoFrame videoFrameFromImage(const QImage &image)
{
    if (image.isNull())
        return {};
    const int width = image.width() & ~1;
    const int height = image.height() & ~1;
    if (width == 0 || height == 0)
        return {};
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    QVideoFrame frame(QVideoFrameFormat(QSize(width, height), QVideoFrameFormat::Format_YUV420P));
    if (!frame.map(QVideoFrame::WriteOnly))
        return {};
    uchar *luma = frame.bits(0);
    uchar *u = frame.bits(1);
    uchar *v = frame.bits(2);
    const int lumaStride = frame.bytesPerLine(0);
    const int chromaStride = frame.bytesPerLine(1);
    for (int y = 0; y < height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        for (int x = 0; x < width; ++x) {
            const QRgb p = line[x];
            luma[qsizetype(y) * lumaStride + x] =
                clampToByte((19595 * qRed(p) + 38470 * qGreen(p) + 7471 * qBlue(p) + 32768) >> 16);
        }
    }
    for (int y = 0; y < height / 2; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y * 2));
        for (int x = 0; x < width / 2; ++x) {
            const QRgb p = line[x * 2];
            const int r = qRed(p), g = qGreen(p), b = qBlue(p);
            u[qsizetype(y) * chromaStride + x] = clampToByte(((-11059 * r - 21709 * g + 32768 * b) >> 16) + 128);
            v[qsizetype(y) * chromaStride + x] = clampToByte(((32768 * r - 27439 * g - 5329 * b) >> 16) + 128);
        }
    }
    frame.unmap();
    return frame;
}

QVideoFrame copyOfVideoFrame(const QVideoFrame &frame)
{
    QVideoFrame source = frame;
    QVideoFrame copy(frame.surfaceFormat());
    if (!source.map(QVideoFrame::ReadOnly))
        return {};
    if (copy.map(QVideoFrame::WriteOnly)) {
        for (int plane = 0; plane < source.planeCount(); ++plane)
            std::memcpy(copy.bits(plane), source.bits(plane), size_t(std::min(source.mappedBytes(plane), copy.mappedBytes(plane))));
        copy.unmap();
    }
    source.unmap();
    return copy;
}

QImage renderVideoFrame(const QVideoFrame &frame, const QRectF &source, const QSize &size)
{
    if (!frame.isValid() || size.isEmpty() || source.isEmpty())
        return {};
    QVideoFrame mapped = frame;
    if (!mapped.map(QVideoFrame::ReadOnly))
        return {};
    QImage out(size, QImage::Format_RGB32);
    const bool done = renderMappedYuv(mapped, source, &out);
    mapped.unmap();
    if (done)
        return out;
    const QImage whole = frame.toImage();
    if (whole.isNull())
        return {};
    return whole.copy(source.toAlignedRect()).scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

QImage imageFromVideoFrame(const QVideoFrame &frame)
{
    return renderVideoFrame(frame, QRectF(QPointF(0, 0), QSizeF(frame.size())), frame.size());
}

} // namespace ZQTPlatform
