// Printed VINs without a barcode, on a generated set of camera scenes (door-frame stickers, plates
// behind glass, form fields; five fonts; tilt, perspective, blur, noise, glare, JPEG loss) over
// the real VINs of tests/data, measured in one run:
//  1. read rate and wrong VINs within 2 seconds of a 15 frames-per-second stream, for the
//     component's text reader (with its consensus over frames) and for stock Tesseract on the
//     whole frame with the VIN alphabet whitelisted (the first 17-character word it gives is its
//     read). The clock runs with the attempts: a reader that takes 300 ms per attempt next sees the
//     frame 300 ms later. It is the reading thread's CPU time (the reader runs on one thread), so
//     that other work on the machine does not count against either reader;
//  2. ms per attempt at 1280x720 and 1920x1080, against stock Tesseract on the same frames.
//
// Run: bench_text_reader [scenes, default 66]
#include "ThreadClock.h"
#include "VinTextArt.h"
#include "platform/capture/VINTextCandidates_p.h"
#include "platform/capture/VINTextReader_p.h"

#include <tesseract/baseapi.h>

#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTextStream>

#include <cstdio>
#include <functional>
#include <memory>
#include <optional>

using namespace ZQTPlatform;

namespace {

constexpr double fps = 15;
constexpr double streamSeconds = 2;

// The real VINs of the test data: North-American ones and those without a valid check digit.
QStringList realVins()
{
    QFile file(QStringLiteral(ZQT_TESTDATA_DIR "/vins/real-vins.csv"));
    QStringList vins;
    if (!file.open(QIODevice::ReadOnly))
        return vins;
    QTextStream in(&file);
    in.readLine();
    while (!in.atEnd()) {
        const QStringList fields = in.readLine().split(QLatin1Char(','));
        const QString label = fields.value(1);
        if (label == QLatin1String("valid") || label == QLatin1String("real-nonNA"))
            vins.append(fields.value(0));
    }
    // Interleaved so that the set mixes both kinds.
    QStringList mixed;
    const QStringList foreign = vins.filter(QRegularExpression(QStringLiteral("^[JK]")));
    for (int i = 0; i < vins.size(); ++i) {
        mixed.append(vins[i]);
        if (i % 5 == 4 && !foreign.isEmpty())
            mixed.append(foreign[(i / 5) % foreign.size()]);
    }
    return mixed;
}

// Stock Tesseract: the whole frame laid out and read, the VIN alphabet whitelisted.
class StockTesseract
{
public:
    StockTesseract()
    {
        m_api.Init(nullptr, "eng", tesseract::OEM_LSTM_ONLY);
        m_api.SetVariable("tessedit_char_whitelist", VINTextEngine::alphabet());
        m_api.SetVariable("debug_file", "/dev/null");
        m_api.SetPageSegMode(tesseract::PSM_AUTO);
    }
    ~StockTesseract() { m_api.End(); }

    std::optional<QString> read(const QImage &frame)
    {
        const QImage grey = frame.convertToFormat(QImage::Format_Grayscale8);
        m_api.SetImage(grey.constBits(), grey.width(), grey.height(), 1, int(grey.bytesPerLine()));
        std::unique_ptr<char[]> text(m_api.GetUTF8Text());
        for (const QString &word : QString::fromUtf8(text.get()).split(QRegularExpression(QStringLiteral("\\s+")))) {
            if (word.size() == 17)
                return word;
        }
        return std::nullopt;
    }

private:
    tesseract::TessBaseAPI m_api;
};

struct Outcome
{
    bool read = false;
    bool wrong = false;
    QString reported; // the VIN reported, right or wrong
    double seconds = 0;
};

// One scene streamed to a reader until it reports a VIN or the stream's time is up.
Outcome stream(const VinTextArt::Scene &scene, const std::function<std::optional<QString>(const QImage &)> &attempt)
{
    Outcome outcome;
    while (outcome.seconds < streamSeconds) {
        const QImage frame = VinTextArt::renderScene(VinTextArt::momentOf(scene, int(outcome.seconds * fps), fps));
        const double start = threadCpuMs();
        const std::optional<QString> reported = attempt(frame);
        outcome.seconds += (threadCpuMs() - start) / 1e3;
        if (reported) {
            outcome.read = outcome.seconds <= streamSeconds;
            outcome.wrong = *reported != scene.vin;
            outcome.reported = *reported;
            return outcome;
        }
    }
    return outcome;
}

struct Tally
{
    int read = 0, wrong = 0;
    double seconds = 0;
    void add(const Outcome &outcome)
    {
        read += outcome.read && !outcome.wrong;
        wrong += outcome.wrong;
        seconds += outcome.read ? outcome.seconds : 0;
    }
};

double msPerAttempt(const QList<VinTextArt::Scene> &scenes, const std::function<void(const QImage &)> &attempt)
{
    double total = 0;
    for (const VinTextArt::Scene &scene : scenes) {
        const QImage frame = VinTextArt::renderScene(scene);
        const double start = threadCpuMs();
        attempt(frame);
        total += threadCpuMs() - start;
    }
    return total / std::max<qsizetype>(1, scenes.size());
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, atoi(argv[1])) : 66;
    VINTextReader reader;
    StockTesseract stock;
    if (!reader.isReady()) {
        std::fprintf(stderr, "no text model (tesseract-ocr-eng)\n");
        return 1;
    }
    const QList<VinTextArt::Scene> scenes = VinTextArt::variedScenes(realVins(), count, QSize(1280, 720));

    Tally ours, theirs;
    const char *carrierNames[] = {"sticker", "plate", "form"};
    std::printf("scene  carrier  font              ours            stock\n");
    for (int i = 0; i < scenes.size(); ++i) {
        const VinTextArt::Scene &scene = scenes[i];
        VINTextConsensus consensus;
        const Outcome mine = stream(scene, [&](const QImage &frame) -> std::optional<QString> {
            if (const auto read = consensus.add(reader.read(frame)))
                return read->vin;
            return std::nullopt;
        });
        const Outcome baseline = stream(scene, [&](const QImage &frame) { return stock.read(frame); });
        ours.add(mine);
        theirs.add(baseline);
        const auto verdict = [](const Outcome &o) {
            return QStringLiteral("%1 %2s").arg(o.wrong ? "WRONG" : o.read ? "read " : "-    ").arg(o.seconds, 4, 'f', 2);
        };
        std::printf("%3d    %-7s  %-16s  %-14s  %s\n", i, carrierNames[int(scene.carrier)],
                    qPrintable(scene.fontFamily), qPrintable(verdict(mine)), qPrintable(verdict(baseline)));
        if (mine.wrong)
            std::fprintf(stderr, "scene %d: the component reported %s, the label shows %s\n", i, qPrintable(mine.reported),
                         qPrintable(scene.vin));
    }
    const double n = scenes.size();
    std::printf("\nRead within %.0f s of frames, %d scenes (goal: >= 90 %%, 0 wrong):\n", streamSeconds, int(n));
    std::printf("  component reader  %5.1f %%  wrong %d  mean time to read %.2f s\n", 100 * ours.read / n, ours.wrong,
                ours.read ? ours.seconds / ours.read : 0.0);
    std::printf("  stock Tesseract   %5.1f %%  wrong %d  mean time to read %.2f s\n", 100 * theirs.read / n, theirs.wrong,
                theirs.read ? theirs.seconds / theirs.read : 0.0);
    std::printf("  ratio (component / stock reads) %.2f\n", theirs.read ? double(ours.read) / theirs.read : 0.0);

    std::printf("\nCPU ms per attempt (one frame, one thread), 12 scenes each:\n");
    for (const QSize size : {QSize(1280, 720), QSize(1920, 1080)}) {
        const QList<VinTextArt::Scene> timed = VinTextArt::variedScenes(realVins(), 12, size);
        const double mine = msPerAttempt(timed, [&](const QImage &frame) { reader.read(frame); });
        const double baseline = msPerAttempt(timed, [&](const QImage &frame) { stock.read(frame); });
        std::printf("  %4dx%-4d  component %7.1f ms   stock %7.1f ms   ratio %.2f\n", size.width(), size.height(), mine,
                    baseline, mine / baseline);
    }
    return 0;
}
