#include "platform/capture/FrameLayout_p.h"

#include <QVideoFrameFormat>

namespace ZQTPlatform {

namespace {

// 16-bit samples are read through their more significant byte.
constexpr int highByteOf16 = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 1 : 0;

// Where the luminance lies in a frame's first plane: the byte of the first pixel's luma and the
// distance between pixels, or for packed RGB the byte of each channel within a pixel.
struct FormatLayout
{
    int offset = 0;
    int pixelStride = 1;
    int red = 0;
    int green = 0;
    int blue = 0;
};

std::optional<FormatLayout> formatLayout(QVideoFrameFormat::PixelFormat format)
{
    using P = QVideoFrameFormat::PixelFormat;
    switch (format) {
    case P::Format_YUV420P:
    case P::Format_YUV422P:
    case P::Format_YV12:
    case P::Format_NV12:
    case P::Format_NV21:
    case P::Format_IMC1:
    case P::Format_IMC2:
    case P::Format_IMC3:
    case P::Format_IMC4:
    case P::Format_Y8:
        return FormatLayout{};
    case P::Format_Y16:
    case P::Format_P010:
    case P::Format_P016:
        return FormatLayout{highByteOf16, 2};
    case P::Format_YUYV:
        return FormatLayout{0, 2};
    case P::Format_UYVY:
        return FormatLayout{1, 2};
    case P::Format_AYUV:
    case P::Format_AYUV_Premultiplied:
        return FormatLayout{1, 4};
    // Packed RGB, named by the order of its bytes in memory.
    case P::Format_ARGB8888:
    case P::Format_ARGB8888_Premultiplied:
    case P::Format_XRGB8888:
        return FormatLayout{0, 4, 1, 2, 3};
    case P::Format_BGRA8888:
    case P::Format_BGRA8888_Premultiplied:
    case P::Format_BGRX8888:
        return FormatLayout{0, 4, 2, 1, 0};
    case P::Format_ABGR8888:
    case P::Format_XBGR8888:
        return FormatLayout{0, 4, 3, 2, 1};
    case P::Format_RGBA8888:
    case P::Format_RGBX8888:
        return FormatLayout{0, 4, 0, 1, 2};
    default:
        return std::nullopt;
    }
}

QImage greyCopy(const PixelLayout &picture)
{
    QImage grey(picture.width, picture.height, QImage::Format_Grayscale8);
    copyLuminance(picture, grey.bits(), grey.bytesPerLine());
    return grey;
}

} // namespace

bool readsInPlace(QVideoFrameFormat::PixelFormat format)
{
    return formatLayout(format).has_value();
}

void useMappedFrame(const QVideoFrame &frame, const std::function<void(const PixelLayout &)> &use)
{
    const std::optional<FormatLayout> format = formatLayout(frame.pixelFormat());
    QVideoFrame mapped = frame;
    if (!format || !mapped.map(QVideoFrame::ReadOnly))
        return;
    const uchar *bits = mapped.bits(0);
    const int width = mapped.width();
    const int height = mapped.height();
    const int rowStride = mapped.bytesPerLine(0);
    if (bits && width > 0 && height > 0 && rowStride >= width * format->pixelStride
        && qint64(mapped.mappedBytes(0)) >= qint64(rowStride) * (height - 1) + qint64(width) * format->pixelStride)
        use(PixelLayout{bits + format->offset, width, height, rowStride, format->pixelStride, format->red,
                        format->green, format->blue});
    mapped.unmap();
}

std::optional<PixelLayout> pictureLayout(const QImage &picture)
{
    constexpr bool little = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;
    const auto layout = [&picture](int offset, int pixelStride, int red = 0, int green = 0, int blue = 0) {
        return PixelLayout{picture.constBits() + offset, picture.width(), picture.height(), int(picture.bytesPerLine()),
                           pixelStride, red, green, blue};
    };
    switch (picture.format()) {
    case QImage::Format_Grayscale8:
        return layout(0, 1);
    case QImage::Format_Grayscale16:
        return layout(highByteOf16, 2);
    case QImage::Format_RGB32:
        return little ? layout(0, 4, 2, 1, 0) : layout(0, 4, 1, 2, 3);
    case QImage::Format_RGBX8888:
        return layout(0, 4, 0, 1, 2);
    case QImage::Format_RGB888:
        return layout(0, 3, 0, 1, 2);
    case QImage::Format_BGR888:
        return layout(0, 3, 2, 1, 0);
    default:
        return std::nullopt;
    }
}

QImage greyOfPicture(const QImage &picture)
{
    if (picture.format() == QImage::Format_Grayscale8)
        return picture;
    if (const std::optional<PixelLayout> layout = pictureLayout(picture))
        return greyCopy(*layout);
    return picture.convertToFormat(QImage::Format_Grayscale8);
}

QImage greyOfVideoFrame(const QVideoFrame &frame)
{
    if (!frame.isValid())
        return {};
    if (!readsInPlace(frame.pixelFormat()))
        return greyOfPicture(frame.toImage());
    QImage grey;
    useMappedFrame(frame, [&grey](const PixelLayout &layout) { grey = greyCopy(layout); });
    return grey;
}

} // namespace ZQTPlatform
