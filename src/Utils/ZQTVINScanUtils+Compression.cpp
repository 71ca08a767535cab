// The claim photo store: the scaling and JPEG round trip every photo goes through before it is
// written.
#include "Utils/ZQTVINScanUtils.h"

#include "Utils/ZQTVINScanUtils_p.h"
#include "platform/ui/ImageContext.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>

#include <algorithm>
#include <cmath>
#include <vector>

using ZQTPlatform::Image;

namespace {

constexpr float kLongSideLimit = 800.0f;
constexpr float kCompressionQuality = 0.65f;
constexpr int kMaxBoxFactor = 16; // 16 x 16 x 255 still fits the 16-bit lanes below

// Adds one row of pixels to the running sums of a block row. Each 32-bit pixel is split into
// two pairs of 8-bit channels held in 16-bit lanes (red and blue, alpha and green), so one
// addition sums two channels. Written as blocks of four so that the compiler vectorises it.
void addRow(const quint32 *__restrict row, quint32 *__restrict redBlue, quint32 *__restrict alphaGreen, int count)
{
    int x = 0;
    for (; x + 4 <= count; x += 4) {
        for (int k = 0; k < 4; ++k) {
            const quint32 pixel = row[x + k];
            redBlue[x + k] += pixel & 0x00FF00FFu;
            alphaGreen[x + k] += (pixel >> 8) & 0x00FF00FFu;
        }
    }
    for (; x < count; ++x) {
        const quint32 pixel = row[x];
        redBlue[x] += pixel & 0x00FF00FFu;
        alphaGreen[x] += (pixel >> 8) & 0x00FF00FFu;
    }
}

} // namespace

namespace ZQTVINScanUtilsPrivate {

QSizeF compressedSize(const QSizeF &points)
{
    float width = float(points.width());
    float height = float(points.height());
    if (width > kLongSideLimit || height > kLongSideLimit) {
        const float ratio = width / height;
        if (ratio < 1.0f) {
            width = width * (kLongSideLimit / height);
            height = kLongSideLimit;
        } else if (ratio > 1.0f) {
            height = height * (kLongSideLimit / width);
            width = kLongSideLimit;
        } else {
            width = height = kLongSideLimit;
        }
    }
    return QSizeF(width, height);
}

int boxReductionFactor(const QSize &bitmap, const QSizeF &target)
{
    if (target.width() < 1 || target.height() < 1)
        return 1;
    const double across = std::floor(bitmap.width() / target.width());
    const double down = std::floor(bitmap.height() / target.height());
    return int(std::clamp(std::min(across, down), 1.0, double(kMaxBoxFactor)));
}

QImage boxReduced(const QImage &bitmap, int factor)
{
    if (factor < 2 || factor > kMaxBoxFactor)
        return bitmap;
    QImage source = bitmap;
    if (source.format() != QImage::Format_RGB32 && source.format() != QImage::Format_ARGB32_Premultiplied)
        source.convertTo(source.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    const int width = source.width() / factor;
    const int height = source.height() / factor;
    if (width < 1 || height < 1)
        return bitmap;

    QImage reduced(width, height, source.format());
    reduced.setColorSpace(source.colorSpace());
    const int used = width * factor;
    std::vector<quint32> redBlue(static_cast<size_t>(used));
    std::vector<quint32> alphaGreen(static_cast<size_t>(used));
    // Division by the block area, rounded to the nearest value, as a multiplication.
    const quint64 area = quint64(factor) * quint64(factor);
    const quint64 reciprocal = ((quint64(1) << 24) + area / 2) / area;
    const auto average = [reciprocal](quint32 sum) { return quint32((sum * reciprocal + (quint64(1) << 23)) >> 24); };

    for (int y = 0; y < height; ++y) {
        std::fill(redBlue.begin(), redBlue.end(), 0u);
        std::fill(alphaGreen.begin(), alphaGreen.end(), 0u);
        for (int dy = 0; dy < factor; ++dy) {
            const auto *row = reinterpret_cast<const quint32 *>(source.constScanLine(y * factor + dy));
            addRow(row, redBlue.data(), alphaGreen.data(), used);
        }
        auto *out = reinterpret_cast<quint32 *>(reduced.scanLine(y));
        for (int x = 0; x < width; ++x) {
            quint32 rb = 0;
            quint32 ag = 0;
            for (int dx = 0; dx < factor; ++dx) {
                rb += redBlue[size_t(x * factor + dx)];
                ag += alphaGreen[size_t(x * factor + dx)];
            }
            out[x] = (average(ag >> 16) << 24) | (average(rb >> 16) << 16) | (average(ag & 0xFFFFu) << 8)
                | average(rb & 0xFFFFu);
        }
    }
    return reduced;
}

QByteArray jpegData(const QImage &bitmap, float quality)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(int(std::lround(std::clamp(quality, 0.0f, 1.0f) * 100.0f)));
    if (!writer.write(bitmap))
        return QByteArray();
    return data;
}

QImage drawnForStorage(const Image &image)
{
    if (image.isNull())
        return QImage();
    const QSizeF size = compressedSize(image.size());

    // Drawing a large photo straight into the small context would sample only a few of the
    // pixels under each output pixel. Averaging whole blocks first leaves the context less than
    // a halving to do, which it does well, and costs less than a full area-averaging scale.
    const QSizeF target = Image::swapsWidthAndHeight(image.imageOrientation()) ? size.transposed() : size;
    const int factor = boxReductionFactor(image.bitmap().size(), target);
    const Image source = factor > 1 ? Image(boxReduced(image.bitmap(), factor), 1.0, image.imageOrientation()) : image;

    ZQTPlatform::ImageContext context(size, false, 1.0);
    context.drawImage(source, QRectF(QPointF(0, 0), size));
    return context.takeImage().bitmap();
}

} // namespace ZQTVINScanUtilsPrivate

Image ZQTVINScanUtils::compressImage(const Image &image)
{
    using namespace ZQTVINScanUtilsPrivate;
    return Image::fromData(jpegData(drawnForStorage(image), kCompressionQuality));
}
