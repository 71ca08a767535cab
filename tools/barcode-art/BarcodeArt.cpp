// Symbols come from ZXing-cpp's writer at one pixel per module and are scaled here, so every module
// is exactly modulePixels wide; scenes are composed with QPainter, then blurred and noised in place.
#include "BarcodeArt.h"

#include <ZXing/BitMatrix.h>
#include <ZXing/MultiFormatWriter.h>

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <random>
#include <vector>

namespace BarcodeArt {

namespace {

ZXing::BarcodeFormat writerFormat(Symbology symbology)
{
    switch (symbology) {
    case Symbology::Code39: return ZXing::BarcodeFormat::Code39;
    case Symbology::Code93: return ZXing::BarcodeFormat::Code93;
    case Symbology::Code128: return ZXing::BarcodeFormat::Code128;
    case Symbology::DataMatrix: return ZXing::BarcodeFormat::DataMatrix;
    case Symbology::QRCode: return ZXing::BarcodeFormat::QRCode;
    }
    return ZXing::BarcodeFormat::None;
}

bool isLinear(Symbology symbology)
{
    return symbology == Symbology::Code39 || symbology == Symbology::Code93 || symbology == Symbology::Code128;
}

// The symbol's modules (true = dark): one row for 1-D codes. Empty when the writer refuses the text.
ZXing::BitMatrix encodeModules(Symbology symbology, const QString &text)
{
    try {
        return ZXing::MultiFormatWriter(writerFormat(symbology)).setMargin(0).encode(text.toStdString(), 1, 1);
    } catch (const std::exception &) {
        return {};
    }
}

// Paper and ink of the printed label, in grey levels.
constexpr int paperLevel = 235;
constexpr int inkLevelAtFullContrast = 25;

int inkLevel(double contrast)
{
    return qRound(paperLevel - std::clamp(contrast, 0.0, 1.0) * (paperLevel - inkLevelAtFullContrast));
}

// Grey levels of the frame behind the label: a dark, slightly warm surface with a low-frequency
// shading and a fine grain. Independent of the noise seed, so frames of one scene differ by noise only.
QImage backgroundTexture(const QSize &size)
{
    std::vector<double> across(size.width());
    for (int x = 0; x < size.width(); ++x)
        across[x] = 22 * std::sin(x / 41.0);
    QImage frame(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        const double down = std::cos(y / 57.0);
        auto *line = reinterpret_cast<QRgb *>(frame.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const quint32 hash = (quint32(x) * 73856093u) ^ (quint32(y) * 19349663u);
            const int grain = int((hash * 2654435761u) >> 28) - 8;
            const int shade = 75 + int(across[x] * down) + grain;
            line[x] = qRgb(std::clamp(shade + 12, 0, 255), std::clamp(shade, 0, 255), std::clamp(shade - 10, 0, 255));
        }
    }
    return frame;
}

// The label card: paper with the symbol in ink (contrast applied) and the caption under it.
QImage labelCard(const QImage &symbol, const QString &caption, double contrast)
{
    const int ink = inkLevel(contrast);
    const int padding = std::max(8, std::min(symbol.width(), symbol.height()) / 10);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::clamp(symbol.height() / 6, 12, 28));
    const QFontMetrics metrics(font);
    const int captionWidth = caption.isEmpty() ? 0 : metrics.horizontalAdvance(caption);
    const int captionHeight = caption.isEmpty() ? 0 : metrics.height() + padding / 2;

    QImage card(std::max(symbol.width(), captionWidth) + 2 * padding, symbol.height() + captionHeight + 2 * padding,
                QImage::Format_RGB32);
    card.fill(QColor(paperLevel, paperLevel, paperLevel - 6));
    const QImage grey = symbol.convertToFormat(QImage::Format_Grayscale8);
    const int left = (card.width() - grey.width()) / 2;
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *in = grey.constScanLine(y);
        auto *out = reinterpret_cast<QRgb *>(card.scanLine(y + padding)) + left;
        for (int x = 0; x < grey.width(); ++x) {
            const int level = paperLevel - (paperLevel - ink) * (255 - in[x]) / 255;
            out[x] = qRgb(level, level, std::max(0, level - 6));
        }
    }
    if (!caption.isEmpty()) {
        QPainter painter(&card);
        painter.setFont(font);
        painter.setPen(QColor(ink, ink, ink));
        painter.drawText(QRect(0, padding + symbol.height() + padding / 2, card.width(), metrics.height()),
                         Qt::AlignHCenter | Qt::AlignTop, caption);
    }
    return card;
}

// Weights of a Gaussian kernel in 1/4096ths.
std::vector<int> gaussianKernel(double sigma)
{
    const int radius = std::max(1, int(std::ceil(3 * sigma)));
    std::vector<double> weights(2 * radius + 1);
    double sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += weights[i + radius] = std::exp(-(i * i) / (2 * sigma * sigma));
    std::vector<int> kernel;
    for (double weight : weights)
        kernel.push_back(int(std::lround(4096 * weight / sum)));
    return kernel;
}

// A separable blur of the three colour channels; rows and columns past the edge repeat the edge.
void blur(QImage &image, double sigma)
{
    const std::vector<int> kernel = gaussianKernel(sigma);
    const int radius = int(kernel.size() / 2);
    const int w = image.width();
    const int h = image.height();
    const auto channels = [](QRgb p) { return std::array<int, 3>{qRed(p), qGreen(p), qBlue(p)}; };

    // Across, into 3 channels per pixel.
    std::vector<std::array<int, 3>> across(size_t(w) * h);
    for (int y = 0; y < h; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            std::array<int, 3> sum{0, 0, 0};
            for (int i = -radius; i <= radius; ++i) {
                const auto c = channels(line[std::clamp(x + i, 0, w - 1)]);
                for (int k = 0; k < 3; ++k)
                    sum[k] += kernel[i + radius] * c[k];
            }
            across[size_t(y) * w + x] = sum;
        }
    }
    // Down, a whole row at a time.
    std::vector<std::array<qint64, 3>> down(w);
    for (int y = 0; y < h; ++y) {
        std::fill(down.begin(), down.end(), std::array<qint64, 3>{0, 0, 0});
        for (int i = -radius; i <= radius; ++i) {
            const auto *row = &across[size_t(std::clamp(y + i, 0, h - 1)) * w];
            for (int x = 0; x < w; ++x)
                for (int k = 0; k < 3; ++k)
                    down[x][k] += qint64(kernel[i + radius]) * row[x][k];
        }
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        const auto level = [](qint64 value) { return std::clamp(int((value + (1 << 23)) >> 24), 0, 255); };
        for (int x = 0; x < w; ++x)
            line[x] = qRgb(level(down[x][0]), level(down[x][1]), level(down[x][2]));
    }
}

// Luminance noise with a normal distribution: a table of normal deviates (Box-Muller over a fixed
// generator, so a seed gives the same frame everywhere), picked at random for each pixel.
void addNoise(QImage &image, double sigma, quint32 seed)
{
    std::mt19937 generator(seed);
    const double scale = 1.0 / (double(std::mt19937::max()) + 1.0);
    std::array<int, 4096> deviates;
    for (size_t i = 0; i < deviates.size(); i += 2) {
        const double radius = sigma * std::sqrt(-2 * std::log((generator() + 1.0) * scale));
        const double angle = 2 * M_PI * generator() * scale;
        deviates[i] = int(std::lround(radius * std::cos(angle)));
        deviates[i + 1] = int(std::lround(radius * std::sin(angle)));
    }
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int n = deviates[generator() % deviates.size()];
            const QRgb p = line[x];
            line[x] = qRgb(std::clamp(qRed(p) + n, 0, 255), std::clamp(qGreen(p) + n, 0, 255),
                           std::clamp(qBlue(p) + n, 0, 255));
        }
    }
}

} // namespace

QImage renderSymbol(Symbology symbology, const QString &text, int modulePixels, int barHeight)
{
    const ZXing::BitMatrix modules = encodeModules(symbology, text);
    if (modules.empty() || modulePixels < 1)
        return {};
    const bool linear = isLinear(symbology);
    const int quiet = linear ? 10 : 4;
    const int rows = linear ? 1 : modules.height();
    const int rowPixels = linear ? (barHeight > 0 ? barHeight : 40 * modulePixels) : modulePixels;
    const int width = (modules.width() + 2 * quiet) * modulePixels;
    const int height = linear ? rowPixels + 2 * quiet * modulePixels : (rows + 2 * quiet) * modulePixels;

    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(255);
    const int top = quiet * modulePixels;
    for (int row = 0; row < rows; ++row) {
        for (int y = top + row * rowPixels; y < top + (row + 1) * rowPixels; ++y) {
            uchar *line = image.scanLine(y) + quiet * modulePixels;
            for (int column = 0; column < modules.width(); ++column) {
                if (modules.get(column, row))
                    std::fill_n(line + column * modulePixels, modulePixels, uchar(0));
            }
        }
    }
    return image;
}

QImage composeSymbols(const QList<Placed> &symbols)
{
    QRect sheet(0, 0, 1, 1);
    for (const Placed &placed : symbols)
        sheet |= QRect(placed.topLeft, placed.symbol.size());
    QImage image(sheet.right() + 1, sheet.bottom() + 1, QImage::Format_Grayscale8);
    image.fill(255);
    QPainter painter(&image);
    for (const Placed &placed : symbols)
        painter.drawImage(placed.topLeft, placed.symbol);
    return image;
}

QImage renderScene(const QImage &symbol, const Scene &scene)
{
    QImage frame = backgroundTexture(scene.frameSize);
    const QImage card = labelCard(symbol, scene.caption, scene.contrast);
    {
        QPainter painter(&frame);
        const QPointF centre(scene.centre.x() * frame.width(), scene.centre.y() * frame.height());
        if (scene.tiltDegrees == 0) {
            painter.drawImage(QPoint(qRound(centre.x() - card.width() / 2.0), qRound(centre.y() - card.height() / 2.0)), card);
        } else {
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.translate(centre);
            painter.rotate(scene.tiltDegrees);
            painter.drawImage(QPointF(-card.width() / 2.0, -card.height() / 2.0), card);
        }
    }
    if (scene.blurRadius > 0)
        blur(frame, scene.blurRadius);
    if (scene.noiseSigma > 0)
        addNoise(frame, scene.noiseSigma, scene.seed);
    return frame;
}

QImage renderLabelScene(const QList<Placed> &symbols, int anchor, Scene scene)
{
    const QImage sheet = composeSymbols(symbols);
    // Without a caption the card is the sheet with the same padding on every side.
    const Placed &anchored = symbols.at(anchor);
    const QPointF offset = QRectF(anchored.topLeft, anchored.symbol.size()).center() - QRectF(sheet.rect()).center();
    scene.caption.clear();
    scene.centre -= QPointF(offset.x() / scene.frameSize.width(), offset.y() / scene.frameSize.height());
    return renderScene(sheet, scene);
}

} // namespace BarcodeArt
