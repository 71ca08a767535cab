// The scanning screen under load, measured in one run:
//  1. the longest stall of the GUI thread while a 1920x1080, 30 frames-per-second video streams
//     into a scanning screen (each read saved, reported and the scanner restarted), against the
//     longest stall of the same idle screen over the same time (goal: under 8 ms);
//  2. frames from the first frame that shows a code to the delegate call, per symbology, on a
//     steady picture (every frame shows the code; the reader cycles its strategies);
//  3. the photo save on that path (JPEG data of the still, decode, claim photo store), against
//     one 800-pixel JPEG encode of the same picture.
//
// Run: bench_scan_session [VIDEO] [--read-text] — without VIDEO a 1080p clip is made with
// zqt-make-sample-clip. With --read-text the screen also reads printed VINs and the clip made shows
// a printed sticker without a barcode, so that part 1 measures the GUI thread while the text
// reader works (each read reported and the scanner restarted, the text delay run again).
#include "BarcodeArt.h"
#include "ThreadClock.h"
#include "TimedApplication.h"
#include "ZQTVINScanComponent.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/VINTextOutput.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLoggingCategory>
#include <QMutex>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstdio>

using namespace ZQTPlatform;

namespace {

const QString vin = QStringLiteral("1HGCM82633A004352");

// Lifecycle steps with their times, from any thread.
struct StepClock
{
    static inline QMutex lock;
    static inline QList<QPair<QString, qint64>> steps;
    static inline QElapsedTimer clock;

    static void handler(QtMsgType, const QMessageLogContext &context, const QString &message)
    {
        if (QLatin1String(context.category ? context.category : "") != QLatin1String("zqt.vin.lifecycle"))
            return;
        QMutexLocker locker(&lock);
        steps.append({message, clock.nsecsElapsed()});
    }
    // Milliseconds from each step a to the next step b after it.
    static QList<double> spans(const QString &a, const QString &b)
    {
        QMutexLocker locker(&lock);
        QList<double> result;
        for (int i = 0; i < steps.size(); ++i) {
            if (steps[i].first != a)
                continue;
            for (int j = i + 1; j < steps.size(); ++j) {
                if (steps[j].first == b) {
                    result.append((steps[j].second - steps[i].second) / 1e6);
                    break;
                }
            }
        }
        return result;
    }
};

// A delegate that counts reports and, on the GUI thread, restarts the scanner after each one.
struct Restarter : VinScannerVCDelegate
{
    QAtomicInt reports;
    QPointer<ZQTVINCaptureVC> screen;
    bool restart = true;
    void didCompleteScanning(const QString &, bool, bool, const ZQTError &) override
    {
        reports.fetchAndAddOrdered(1);
        if (restart)
            QMetaObject::invokeMethod(qApp, [this] {
                if (screen)
                    screen->processToggleBarCodeWithImageExists(false);
            }, Qt::QueuedConnection);
    }
};

struct ScreenRun
{
    Restarter delegate;
    Window window;
    ZQTVINCaptureVC *screen = nullptr;

    explicit ScreenRun(bool restart, bool readText)
    {
        delegate.restart = restart;
        screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, QStringLiteral("BENCH"));
        screen->setEnableVINTextReading(readText);
        delegate.screen = screen;
        auto *navigation = new NavigationController;
        window.resize(375, 812);
        window.setRootViewController(navigation);
        navigation->pushViewController(screen, false);
        window.makeKeyAndVisible();
    }
    ~ScreenRun() { delete screen; }
};

// Nanoseconds the GUI thread has waited for a core so far (Linux scheduler statistics), read from
// a file opened once: the clock is read at every 1 ms tick.
qint64 threadRunDelayNs()
{
    static QFile file(QStringLiteral("/proc/thread-self/schedstat"));
    if (!file.isOpen() && !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 0;
    file.seek(0);
    const QList<QByteArray> fields = file.read(128).split(' ');
    return fields.value(1).toLongLong();
}

struct Stall { double ms = 0; double cpuMs = 0; double waitMs = 0; };

// The longest gap between 1 ms timer ticks on the GUI thread over the time, less the tick, with
// the GUI thread's CPU time and its wait for a core within that gap.
Stall longestStall(int milliseconds)
{
    QElapsedTimer clock;
    qint64 last = 0, lastWait = 0;
    double lastCpu = 0;
    Stall longest;
    QTimer tick;
    tick.setTimerType(Qt::PreciseTimer);
    tick.setInterval(1);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        const qint64 wait = threadRunDelayNs();
        const double cpu = threadCpuMs();
        if ((now - last) / 1e6 - 1.0 > longest.ms)
            longest = {(now - last) / 1e6 - 1.0, cpu - lastCpu, (wait - lastWait) / 1e6};
        last = now;
        lastWait = wait;
        lastCpu = cpu;
    });
    // A plain event loop: QTest::qWait sleeps between its passes and would measure itself.
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    clock.start();
    lastWait = threadRunDelayNs();
    lastCpu = threadCpuMs();
    tick.start();
    loop.exec();
    return longest;
}

QString makeClip(const QString &folder, bool printed)
{
    const QString path = folder + QStringLiteral("/clip-1080p.webm");
    QStringList arguments = {path, QStringLiteral("--size"), QStringLiteral("1920x1080"), QStringLiteral("--fps"),
                             QStringLiteral("30"), QStringLiteral("--seconds"), QStringLiteral("4"), QStringLiteral("--quick")};
    if (printed)
        arguments.append(QStringLiteral("--printed"));
    QProcess generator;
    generator.start(QStringLiteral(ZQT_MAKE_SAMPLE_CLIP), arguments);
    generator.waitForFinished(-1);
    return generator.exitCode() == 0 ? path : QString();
}

double median(QList<double> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    TimedApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("zqt.vin.lifecycle.debug=true\nzqt.vin.debug=false\nzqt.vin.warning=false"));
    StepClock::clock.start();
    qInstallMessageHandler(&StepClock::handler);
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_DOCUMENTS_DIR", (home.path() + "/Documents").toUtf8());

    // 1. GUI stall while 1080p30 streams into the screen.
    QStringList arguments = app.arguments().mid(1);
    const bool readText = arguments.removeAll(QStringLiteral("--read-text")) > 0;
    QString clip = arguments.value(0);
    if (clip.isEmpty())
        clip = makeClip(home.path(), readText);
    if (clip.isEmpty()) {
        std::fprintf(stderr, "no clip\n");
        return 1;
    }
    const int streamMs = 6000;
    Stall idleStall, streamingStall;
    int reads = 0;
    quint64 framesRead = 0, framesDropped = 0, textFramesRead = 0;
    {
        ScreenRun idle(true, readText); // no video device yet: the same screen with nothing streaming
        QTest::qWait(1000);
        idleStall = longestStall(streamMs);
    }
    {
        CaptureDevice::addStandIn(clip);
        ScreenRun streaming(true, readText);
        QTest::qWait(1000);
        app.recording = true;
        streamingStall = longestStall(streamMs);
        app.recording = false;
        reads = streaming.delegate.reports.loadAcquire();
        if (streaming.screen->output()) {
            framesRead = streaming.screen->output()->framesRead();
            framesDropped = streaming.screen->output()->framesDropped();
        }
        for (const auto &output : streaming.screen->session()->outputs()) {
            if (const auto text = std::dynamic_pointer_cast<VINTextOutput>(output))
                textFramesRead = text->framesRead();
        }
        CaptureDevice::removeStandIns();
    }
    std::printf("GUI thread, longest stall over %d s (1 ms ticks):\n", streamMs / 1000);
    std::printf("  idle screen (baseline)              %7.2f ms\n", idleStall.ms);
    std::printf("  1080p30 streaming, %3d reads saved  %7.2f ms   ratio %.2f   goal < 8 ms: %s\n", reads,
                streamingStall.ms, idleStall.ms > 0 ? streamingStall.ms / idleStall.ms : 0.0, streamingStall.ms < 8 ? "met" : "NOT met");
    std::printf("  longest stall while streaming: %.2f ms of GUI-thread CPU, %.2f ms waiting for a core, %.2f ms blocked\n",
                streamingStall.cpuMs, streamingStall.waitMs,
                std::max(0.0, streamingStall.ms + 1.0 - streamingStall.cpuMs - streamingStall.waitMs));
    std::printf("  reader: %llu frames read, %llu dropped while busy\n", (unsigned long long)framesRead,
                (unsigned long long)framesDropped);
    if (readText)
        std::printf("  text reader: %llu frames read\n", (unsigned long long)textFramesRead);
    std::printf("  most GUI-thread CPU time for one event: %.2f ms\n", app.longestCpuMs);
    std::printf("  longest GUI-thread events while streaming (CPU, wall, receiver):\n");
    for (const TimedApplication::Slow &slow : std::as_const(app.slowest))
        std::printf("    %6.2f ms %6.2f ms  %s\n", slow.cpuMs, slow.ms, qPrintable(slow.what));

    // 2 and 3. Frames to the report, and the save on that path.
    std::printf("\nFrames from the first frame showing the code to the report (1280x720 label scene):\n");
    struct Case { const char *name; BarcodeArt::Symbology symbology; int module; };
    const Case cases[] = {{"Code 39", BarcodeArt::Symbology::Code39, 3},
                          {"Code 128", BarcodeArt::Symbology::Code128, 3},
                          {"Data Matrix", BarcodeArt::Symbology::DataMatrix, 8}};
    QImage lastPicture;
    for (const Case &c : cases) {
        QList<double> frames;
        for (int run = 0; run < 5; ++run) {
            BarcodeArt::Scene scene;
            scene.noiseSigma = 4;
            scene.blurRadius = 0.8;
            scene.tiltDegrees = 3;
            scene.seed = quint32(run + 1);
            lastPicture = BarcodeArt::renderScene(BarcodeArt::renderSymbol(c.symbology, vin, c.module), scene);
            CaptureDevice *device = CaptureDevice::addStandIn(lastPicture);
            int delivered = 0;
            QObject::connect(device, &CaptureDevice::frameArrived, [&delivered] { ++delivered; });
            ScreenRun run1(false, false);
            int atReport = -1;
            // A run without a report counts as -1.
            (void)QTest::qWaitFor([&] {
                if (atReport < 0 && run1.delegate.reports.loadAcquire() > 0)
                    atReport = delivered;
                return atReport >= 0;
            }, 10000);
            frames.append(atReport);
            CaptureDevice::removeStandIns();
        }
        std::printf("  %-12s median %.0f frames (runs:", c.name, median(frames));
        for (double f : frames)
            std::printf(" %.0f", f);
        std::printf(")\n");
    }
    const QList<double> saves = StepClock::spans(QStringLiteral("processUsePhotoCompletionHandler"),
                                                 QStringLiteral("stopBarCodeScanner"));
    QElapsedTimer encodeClock;
    QList<double> encodes;
    for (int i = 0; i < 5; ++i) {
        encodeClock.start();
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        lastPicture.scaled(800, 450, Qt::KeepAspectRatio, Qt::SmoothTransformation).save(&buffer, "JPEG", 100);
        encodes.append(encodeClock.nsecsElapsed() / 1e6);
    }
    std::printf("\nPhoto save on the read path (median of %lld): %.1f ms; one 800-px JPEG encode %.1f ms; ratio %.2f\n",
                (long long)saves.size(), median(saves), median(encodes),
                median(encodes) > 0 ? median(saves) / median(encodes) : 0.0);
    return 0;
}
