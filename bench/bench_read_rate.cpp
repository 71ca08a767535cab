// How often a hard VIN label is read: generated 1280 x 720 scenes with the label tilted by up to
// 10 degrees, blurred, noisy, at low contrast and with 2-pixel modules, per symbology (and Data
// Matrix with 3-pixel modules, where the 2-pixel set is out of everyone's reach). The
// component's reader gets each scene as a camera held still delivers it: 4 consecutive frames
// that differ in their sensor noise, read with 4 consecutive strategies. ZXing-cpp with its default
// options (try harder, try rotate, try downscale) and zbar (1-D codes only) read the first frame once.
//
// Run: bench_read_rate [scenes per symbology, default 40]. Prints the table of read rates; a read
// counts when the exact text comes back.
#include "BarcodeBaselines.h"
#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/VideoFrames_p.h"

#include <BarcodeArt.h>

#include <QGuiApplication>
#include <QVideoFrame>

#include <algorithm>
#include <cstdio>
#include <random>

using namespace ZQTPlatform;
using BarcodeArt::Symbology;

namespace {

constexpr int framesPerScene = 4;

struct Row
{
    const char *name;
    Symbology symbology;
    int modulePixels;
    bool zbarReads;
};

// A VIN-shaped text: 17 characters without I, O and Q.
QString randomVin(std::mt19937 &random)
{
    static const QString alphabet = QStringLiteral("0123456789ABCDEFGHJKLMNPRSTUVWXYZ");
    QString text;
    for (int i = 0; i < 17; ++i)
        text += alphabet.at(int(random() % alphabet.size()));
    return text;
}

BarcodeArt::Scene hardScene(std::mt19937 &random)
{
    const auto uniform = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    BarcodeArt::Scene scene;
    scene.frameSize = QSize(1280, 720);
    scene.centre = QPointF(uniform(0.4, 0.6), uniform(0.42, 0.58));
    scene.tiltDegrees = uniform(-10, 10);
    scene.blurRadius = uniform(0.3, 1.2);
    scene.noiseSigma = uniform(2, 8);
    scene.contrast = uniform(0.35, 1.0);
    return scene;
}

bool contains(const QStringList &texts, const QString &text)
{
    return texts.contains(text);
}

bool contains(const QList<DecodedBarcode> &codes, const QString &text)
{
    return std::any_of(codes.begin(), codes.end(), [&text](const DecodedBarcode &code) { return code.text == text; });
}

} // namespace

int main(int argc, char **argv)
{
    // Pictures and fonts only: no display needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int scenes = argc > 1 ? std::max(1, atoi(argv[1])) : 40;
    const BarcodeReader reader(BarcodeBaselines::vinTypes());
    BarcodeBaselines::ZbarReader zbar;
    const Row rows[] = {
        {"Code 39", Symbology::Code39, 2, true},
        {"Code 93", Symbology::Code93, 2, true},
        {"Code 128", Symbology::Code128, 2, true},
        {"Data Matrix", Symbology::DataMatrix, 2, false},
        // Few readers get anything out of 2-pixel Data Matrix modules once blurred: the same at 3.
        {"DM, 3-px", Symbology::DataMatrix, 3, false},
    };

    std::printf("read rate on %d hard scenes per symbology (tilt <= 10 deg, blur, noise, contrast 0.35-1, 2-px modules)\n\n",
                scenes);
    std::printf("%-12s %14s %14s %16s %10s   %s\n", "symbology", "ours, 4 frames", "ours, 1 frame", "ZXing defaults",
                "zbar", "ours >= best baseline");
    for (const Row &row : rows) {
        std::mt19937 random(20240601u + unsigned(row.symbology) + unsigned(row.modulePixels));
        int ours = 0;
        int oursFirstFrame = 0;
        int zxing = 0;
        int zbarRead = 0;
        for (int i = 0; i < scenes; ++i) {
            const QString text = randomVin(random);
            const QImage symbol = BarcodeArt::renderSymbol(row.symbology, text, row.modulePixels);
            BarcodeArt::Scene scene = hardScene(random);
            scene.caption = QStringLiteral("VIN ") + text;
            bool read = false;
            for (int frameNumber = 0; frameNumber < framesPerScene; ++frameNumber) {
                scene.seed = quint32(i * framesPerScene + frameNumber + 1);
                QVideoFrame frame = videoFrameFromImage(BarcodeArt::renderScene(symbol, scene));
                const bool readNow = contains(reader.read(frame, frameNumber), text);
                if (frameNumber == 0) {
                    oursFirstFrame += readNow;
                    if (!frame.map(QVideoFrame::ReadOnly))
                        return 1;
                    const BarcodeBaselines::Luminance luminance{frame.bits(0), frame.width(), frame.height(), frame.bytesPerLine(0)};
                    zxing += contains(BarcodeBaselines::zxingDefaults(luminance), text);
                    if (row.zbarReads)
                        zbarRead += contains(zbar.read(luminance), text);
                    frame.unmap();
                }
                read = read || readNow;
            }
            ours += read;
        }
        const auto percent = [scenes](int count) { return 100.0 * count / scenes; };
        const int best = std::max(zxing, row.zbarReads ? zbarRead : 0);
        char zbarColumn[16] = "-";
        if (row.zbarReads)
            std::snprintf(zbarColumn, sizeof zbarColumn, "%.0f %%", percent(zbarRead));
        std::printf("%-12s %12.0f %% %12.0f %% %14.0f %% %10s   %s\n", row.name, percent(ours), percent(oursFirstFrame),
                    percent(zxing), zbarColumn, ours >= best ? "yes" : "NO");
    }
    return 0;
}
