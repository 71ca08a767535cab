// VIN labels in field conditions (keystone, turn, motion blur, defocus, low light with shot noise,
// glare, JPEG loss; the set of zqt-make-field-set, seed 18), read in one run by the component's
// reader, raw ZXing-cpp (its defaults, and try harder without downscale) and zbar (1-D only).
// Each scene is a steady picture: a camera held still delivers up to 10 frames that differ in
// their noise and JPEG artefacts; a reader reads the scene when one of them gives the exact VIN.
// The component's reader gets them as the metadata output hands them over (frame numbers 0..9,
// so its strategy cycle turns); the baselines read every frame with the same options.
//
// Prints, per symbology and overall: the share of scenes read within 10 frames and on the first
// frame, wrong payloads, the ratio against the better engine; and the cost of one frame at
// 1920 x 1080, the component's reader against ZXing-cpp's try-harder read of the same frames.
//
// Run: bench_field_conditions [scenes, default 200] [frames per scene, default 10]
#include "BarcodeBaselines.h"
#include "FieldConditions.h"
#include "platform/capture/BarcodeReader_p.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

using namespace ZQTPlatform;
using BarcodeArt::Symbology;

namespace {

constexpr quint32 setSeed = 18;

enum Reader { Ours, ZxingDefaults, ZxingTryHarder, Zbar, readerCount };
const char *const readerNames[readerCount] = {"ours", "ZXing defaults", "ZXing tryHarder", "zbar"};

struct Tally
{
    int scenes = 0;
    int read[readerCount] = {};
    int firstFrame[readerCount] = {};
    int wrong[readerCount] = {};
};

struct Cost
{
    double oursMs = 0;
    double zxingMs = 0;
    int frames = 0;
    double oursVainMs = 0; // frames in which ours found nothing
    int vainFrames = 0;
};

double percent(int count, int of)
{
    return of > 0 ? 100.0 * count / of : 0;
}

void printRow(const char *name, const Tally &tally, bool zbarReads)
{
    std::printf("%-12s %5d", name, tally.scenes);
    for (int r = 0; r < readerCount; ++r) {
        if (r == Zbar && !zbarReads)
            std::printf(" %16s", "-");
        else
            std::printf(" %9.1f%% (%3.0f%%)", percent(tally.read[r], tally.scenes), percent(tally.firstFrame[r], tally.scenes));
    }
    const int best = std::max({tally.read[ZxingDefaults], tally.read[ZxingTryHarder], zbarReads ? tally.read[Zbar] : 0});
    if (best > 0)
        std::printf(" %7.2fx", double(tally.read[Ours]) / best);
    else
        std::printf(" %8s", "inf");
    std::printf("   wrong: %d/%d/%d/%d\n", tally.wrong[Ours], tally.wrong[ZxingDefaults], tally.wrong[ZxingTryHarder], tally.wrong[Zbar]);
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int scenes = argc > 1 ? std::max(1, atoi(argv[1])) : 200;
    const int framesPerScene = argc > 2 ? std::max(1, atoi(argv[2])) : 10;
    const QStringList vins = FieldConditions::realVins(QStringLiteral(ZQT_REAL_VINS_CSV));
    const BarcodeReader reader(BarcodeBaselines::vinTypes());
    BarcodeBaselines::ZbarReader zbar;

    std::map<Symbology, Tally> tallies;
    Tally overall;
    Cost cost;
    for (int i = 0; i < scenes; ++i) {
        const FieldConditions::FieldScene scene = FieldConditions::sceneAt(i, setSeed, vins);
        const FieldConditions::SteadyCamera camera(scene);
        const bool large = scene.frameSize.width() == 1920;
        const bool zbarReads = scene.symbology != Symbology::DataMatrix;
        bool read[readerCount] = {};
        for (int f = 0; f < framesPerScene; ++f) {
            const bool oursRuns = !read[Ours];
            const QImage frame = camera.frame(f);
            const BarcodeBaselines::Luminance luminance{frame.constBits(), frame.width(), frame.height(), int(frame.bytesPerLine())};
            const std::function<QStringList()> reads[readerCount] = {
                [&] {
                    QStringList texts;
                    QElapsedTimer clock;
                    clock.start();
                    for (const DecodedBarcode &code : reader.read(frame, quint64(f)))
                        texts.append(code.text);
                    const double ms = clock.nsecsElapsed() / 1e6;
                    if (large) {
                        cost.oursMs += ms;
                        ++cost.frames;
                        if (texts.isEmpty()) {
                            cost.oursVainMs += ms;
                            ++cost.vainFrames;
                        }
                    }
                    return texts;
                },
                [&] { return BarcodeBaselines::zxingDefaults(luminance); },
                [&] {
                    QElapsedTimer clock;
                    clock.start();
                    const QStringList texts = BarcodeBaselines::zxingTryHarder(luminance);
                    if (large && oursRuns)
                        cost.zxingMs += clock.nsecsElapsed() / 1e6;
                    return texts;
                },
                [&] { return zbarReads ? zbar.read(luminance) : QStringList(); },
            };
            for (int r = 0; r < readerCount; ++r) {
                // The cost comparison needs both readers on every 1080p frame of a scene ours reads.
                const bool timed = large && r == ZxingTryHarder && oursRuns;
                if (read[r] && !timed)
                    continue;
                const QStringList texts = reads[r]();
                for (const QString &text : texts) {
                    if (text != scene.vin) {
                        ++tallies[scene.symbology].wrong[r];
                        ++overall.wrong[r];
                        std::fprintf(stderr, "scene %d: %s read \"%s\", label %s\n", i, readerNames[r], qPrintable(text),
                                     qPrintable(scene.vin));
                    }
                }
                if (!read[r] && texts.contains(scene.vin)) {
                    read[r] = true;
                    if (f == 0) {
                        ++tallies[scene.symbology].firstFrame[r];
                        ++overall.firstFrame[r];
                    }
                }
            }
            if (std::all_of(std::begin(read), std::end(read) - (zbarReads ? 0 : 1), [](bool done) { return done; }))
                break;
        }
        ++tallies[scene.symbology].scenes;
        ++overall.scenes;
        for (int r = 0; r < readerCount; ++r) {
            tallies[scene.symbology].read[r] += read[r];
            overall.read[r] += read[r];
        }
        if (!read[Ours])
            std::fprintf(stderr, "scene %d (%s, %dx%d) not read\n", i, qPrintable(FieldConditions::symbologyName(scene.symbology)),
                         scene.frameSize.width(), scene.frameSize.height());
    }

    std::printf("field conditions: %d scenes (seed %u), read within %d frames of a steady picture (first frame in brackets)\n\n",
                scenes, setSeed, framesPerScene);
    std::printf("%-12s %5s", "symbology", "scenes");
    for (const char *name : readerNames)
        std::printf(" %16s", name);
    std::printf(" %8s   %s\n", "ours/best", "wrong payloads ours/defaults/tryHarder/zbar");
    for (const auto &[symbology, tally] : tallies)
        printRow(qPrintable(FieldConditions::symbologyName(symbology)), tally, symbology != Symbology::DataMatrix);
    printRow("overall", overall, true);
    const int best = std::max({overall.read[ZxingDefaults], overall.read[ZxingTryHarder], overall.read[Zbar]});
    const double oursRate = percent(overall.read[Ours], overall.scenes);
    std::printf("\ngoal 1: ours >= 3x the better engine overall: %.2fx (%s)\n", best ? double(overall.read[Ours]) / best : 0.0,
                overall.read[Ours] >= 3 * best ? "met" : "NOT met");
    std::printf("goal 2: >= 75%% of scenes read within %d frames: %.1f%% (%s)\n", framesPerScene, oursRate,
                oursRate >= 75 ? "met" : "NOT met");
    if (cost.frames > 0) {
        const double mean = cost.oursMs / cost.frames;
        std::printf("\ncost of one 1920x1080 frame, one core (%d frames; timings inflate under load from other processes):\n", cost.frames);
        std::printf("  ours, every frame                      %7.2f ms\n", mean);
        if (cost.vainFrames > 0)
            std::printf("  ours, frames without a read            %7.2f ms\n", cost.oursVainMs / cost.vainFrames);
        std::printf("  ZXing tryHarder, same frames (baseline) %6.2f ms\n", cost.zxingMs / cost.frames);
        std::printf("  ratio ours / ZXing tryHarder           %7.2f\n", cost.zxingMs > 0 ? cost.oursMs / cost.zxingMs : 0.0);
        std::printf("goal 3: under 33 ms per frame: %s\n", mean < 33 ? "met" : "NOT met");
    }
    return 0;
}
