// What reading one camera frame costs: the component's barcode reader (a YUV420P QVideoFrame in:
// map, read the luminance plane in place, turn the results into code records) against ZXing-cpp
// called directly on the same luminance plane with the same options, strategy by strategy, and
// against zbar on the frames with 1-D codes; at 1280 x 720 and 1920 x 1080.
//
// On frames without a code both do the same work. On a frame with a code ours does more by design:
// it reads every 1-D code (ZXing is asked for one) and reads the frame with the whole strategy
// cycle, so the baseline's figures there are what a frame cost when the reader gave one 1-D code
// of one strategy.
//
// Run: bench_barcode_reader [iterations per figure, default 15]. Each figure is the median of its
// iterations, ours and the baseline measured alternately. The ratios that matter are printed last.
#include "BarcodeBaselines.h"
#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/VideoFrames_p.h"

#include <BarcodeArt.h>

#include <QGuiApplication>
#include <QVideoFrame>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

using namespace ZQTPlatform;
using BarcodeArt::Symbology;

namespace {

const QString vin = QStringLiteral("1HGCM82633A004352");

struct FrameKind
{
    const char *name;
    bool hasCode;
    bool linear;
    Symbology symbology;
    bool partNumberAbove = false; // a Code 128 part number above the VIN, as on door-frame labels
};

const FrameKind frameKinds[] = {
    {"Code 39 VIN", true, true, Symbology::Code39},
    {"Code 128 VIN", true, true, Symbology::Code128},
    {"Data Matrix VIN", true, false, Symbology::DataMatrix},
    {"part no. + Code 39 VIN", true, true, Symbology::Code39, true},
    {"no code", false, false, Symbology::Code39},
};

QVideoFrame cameraFrame(const FrameKind &kind, const QSize &size)
{
    BarcodeArt::Scene scene;
    scene.frameSize = size;
    scene.noiseSigma = 3;
    scene.contrast = 0.8;
    scene.caption = QStringLiteral("VIN ") + vin;
    QImage symbol = BarcodeArt::renderSymbol(kind.symbology, vin, 3);
    if (!kind.hasCode)
        symbol.fill(255);
    if (kind.partNumberAbove) {
        const QImage partNumber = BarcodeArt::renderSymbol(Symbology::Code128, QStringLiteral("PN 84512-33A07"), 3);
        symbol = BarcodeArt::composeSymbols({{partNumber, QPoint((symbol.width() - partNumber.width()) / 2, 0)},
                                             {symbol, QPoint(0, partNumber.height())}});
    }
    return videoFrameFromImage(BarcodeArt::renderScene(symbol, scene));
}

double milliseconds(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Medians of two pieces of work measured alternately.
std::pair<double, double> alternately(int iterations, const std::function<void()> &a, const std::function<void()> &b)
{
    std::vector<double> timesA;
    std::vector<double> timesB;
    for (int i = 0; i < iterations; ++i) {
        timesA.push_back(milliseconds(a));
        timesB.push_back(milliseconds(b));
    }
    return {median(timesA), median(timesB)};
}

struct Totals
{
    double ours = 0;
    double zxing = 0;
};

} // namespace

int main(int argc, char **argv)
{
    // Pictures and fonts only: no display needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int iterations = argc > 1 ? std::max(1, atoi(argv[1])) : 15;
    const BarcodeReader reader(BarcodeBaselines::vinTypes());
    BarcodeBaselines::ZbarReader zbar;
    Totals withoutCode;
    Totals withCode;
    std::vector<std::string> zbarLines;

    for (const QSize size : {QSize(1280, 720), QSize(1920, 1080)}) {
        std::printf("\n%d x %d, per frame (ms)      strategy:", size.width(), size.height());
        for (int s = 0; s < ReadStrategy::cycleLength(); ++s)
            std::printf("  %5d ours/ZXing", s);
        std::printf("   cycle mean\n");
        for (const FrameKind &kind : frameKinds) {
            QVideoFrame frame = cameraFrame(kind, size);
            if (!frame.map(QVideoFrame::ReadOnly))
                return 1;
            const BarcodeBaselines::Luminance luminance{frame.bits(0), frame.width(), frame.height(), frame.bytesPerLine(0)};
            std::printf("  %-38s", kind.name);
            Totals cycle;
            for (int s = 0; s < ReadStrategy::cycleLength(); ++s) {
                qsizetype oursFound = 0;
                qsizetype zxingFound = 0;
                const auto [ours, zxing] = alternately(
                    iterations, [&] { oursFound = reader.read(frame, s).size(); },
                    [&] { zxingFound = BarcodeBaselines::zxingWithStrategy(luminance, ReadStrategy::forFrame(s)).size(); });
                std::printf("  %5.1f/%5.1f%s", ours, zxing, oursFound == zxingFound ? " " : "!");
                cycle.ours += ours;
                cycle.zxing += zxing;
            }
            std::printf("   %5.1f/%5.1f\n", cycle.ours / ReadStrategy::cycleLength(), cycle.zxing / ReadStrategy::cycleLength());
            Totals &overall = kind.hasCode ? withCode : withoutCode;
            overall.ours += cycle.ours;
            overall.zxing += cycle.zxing;

            if (kind.linear || !kind.hasCode) {
                std::vector<double> times;
                qsizetype found = 0;
                for (int i = 0; i < iterations; ++i)
                    times.push_back(milliseconds([&] { found = zbar.read(luminance).size(); }));
                char line[200];
                std::snprintf(line, sizeof line, "%d x %d %-16s zbar %5.1f ms (%s), ours %5.1f ms per frame over the cycle: %.2f",
                              size.width(), size.height(), kind.name, median(times), found ? "read" : "no code",
                              cycle.ours / ReadStrategy::cycleLength(),
                              cycle.ours / ReadStrategy::cycleLength() / median(times));
                zbarLines.push_back(line);
            }
            frame.unmap();
        }
    }
    std::printf("\n(a '!' marks a strategy where ours and ZXing found a different number of codes)\n");
    std::printf("\nframes without a code, ours / ZXing-cpp on the same luminance with the same options: %.3f  "
                "(goal: at most 1.10)\n",
                withoutCode.ours / withoutCode.zxing);
    std::printf("frames with codes, every code of the whole cycle (ours) / one strategy's first 1-D code (ZXing): %.2f\n",
                withCode.ours / withCode.zxing);
    std::printf("ours (mean of one strategy cycle) / zbar on the same frame:\n");
    for (const std::string &line : zbarLines)
        std::printf("  %s\n", line.c_str());
    return 0;
}
