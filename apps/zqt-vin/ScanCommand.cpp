// zqt-vin scan: runs the capture screen's barcode session over image and video files, one after
// the other, each standing in for the camera.
#include "Commands.h"
#include "ScanHost.h"

#include "platform/capture/CaptureDevice.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QTimer>

using namespace ZQTPlatform;

namespace ZqtVin {

namespace {

// A picture is given this long (its frames cycle through the reader's strategies); a video
// plays once to its end, within the same overall limit.
constexpr int pictureMs = 2000;
// With printed VINs read too, a picture is given longer: text is read only after the screen's
// delay without a barcode, a few hundred milliseconds per frame, and needs agreeing frames.
constexpr int textPictureMs = 8000;
constexpr int fileLimitMs = 60000;
// A file that has shown no picture by then is taken as one that never will (a damaged video).
constexpr int firstFrameMs = 5000;

struct FileOutcome
{
    std::optional<ZqtApps::ScanResult> result;
    QString photoPath;
    QString problem; // why the file could not be scanned
};

FileOutcome scanFile(const QString &claimId, const QString &path, bool readText)
{
    FileOutcome outcome;
    CaptureDevice::removeStandIns();
    CaptureDevice *device = CaptureDevice::addStandIn(path);
    if (!device) {
        outcome.problem = QStringLiteral("cannot be read");
        return outcome;
    }
    ZqtApps::ScanHostOptions options;
    options.claimId = claimId;
    options.readText = readText;
    ZqtApps::ScanHost host(options);
    if (!host.screen()) {
        outcome.problem = QStringLiteral("no capture screen");
        return outcome;
    }
    host.reportUncaughtExceptions({{QStringLiteral("file"), path}});
    QEventLoop loop;
    QObject::connect(&host, &ZqtApps::ScanHost::scanned, &loop, [&](const ZqtApps::ScanResult &result) {
        outcome.result = result;
        loop.quit();
    });
    QObject::connect(device, &CaptureDevice::endOfStream, &loop, &QEventLoop::quit);
    QObject::connect(device, &CaptureDevice::failed, &loop, &QEventLoop::quit);
    QTimer::singleShot(fileLimitMs, &loop, &QEventLoop::quit);
    QTimer firstFrame;
    firstFrame.setSingleShot(true);
    QObject::connect(&firstFrame, &QTimer::timeout, &loop, [&] {
        outcome.problem = QStringLiteral("gave no picture within %1 seconds").arg(firstFrameMs / 1000);
        loop.quit();
    });
    QObject::connect(device, &CaptureDevice::frameArrived, &firstFrame, &QTimer::stop, Qt::SingleShotConnection);
    firstFrame.start(firstFrameMs);
    host.show(QSize(375, 812));
    // A picture repeats itself: after a while more frames tell nothing new.
    QTimer pictureLimit;
    pictureLimit.setSingleShot(true);
    QObject::connect(&pictureLimit, &QTimer::timeout, &loop, &QEventLoop::quit);
    if (device->kind() == CaptureDevice::Kind::Picture)
        pictureLimit.start(readText ? textPictureMs : pictureMs);
    loop.exec();
    if (!outcome.result && outcome.problem.isEmpty() && !device->availabilityError().isNull())
        outcome.problem = device->availabilityError().localizedDescription();
    outcome.photoPath = host.vinPhotoPath();
    return outcome;
}

} // namespace

int runScan(const QStringList &args, Streams io)
{
    static const char usage[] = "usage: zqt-vin scan --claim ID [--json] [--read-text] FILE...\n";
    const Arguments parsed =
        parseArguments(args, {QStringLiteral("--claim")}, {QStringLiteral("--json"), QStringLiteral("--read-text")});
    if (const std::optional<int> status = endEarly(args, parsed.problem, io, usage))
        return *status;
    const QString claimId = parsed.value("--claim");
    if (claimId.isEmpty())
        return usageError(io, QStringLiteral("--claim is required"), usage);
    if (parsed.operands.isEmpty())
        return usageError(io, QStringLiteral("no FILE given"), usage);
    const bool json = parsed.has("--json");
    const QStringList &files = parsed.operands;
    bool everyFileGaveAVin = true;
    for (const QString &file : files) {
        const FileOutcome outcome = scanFile(claimId, file, parsed.has("--read-text"));
        everyFileGaveAVin = everyFileGaveAVin && outcome.result.has_value();
        if (json) {
            QJsonObject line = outcome.result ? outcome.result->toJson() : QJsonObject{{QStringLiteral("vin"), QJsonValue::Null}};
            line.insert(QStringLiteral("file"), file);
            line.insert(QStringLiteral("photo"), outcome.photoPath.isEmpty() ? QJsonValue(QJsonValue::Null)
                                                                              : QJsonValue(outcome.photoPath));
            if (!outcome.result)
                line.insert(QStringLiteral("result"), outcome.problem.isEmpty() ? QStringLiteral("no barcode") : outcome.problem);
            printJson(line, io.out);
        } else if (outcome.result) {
            io.out << escapedForLine(file) << "\t" << escapedForLine(outcome.result->vin) << "\t"
                   << (outcome.result->isVINValid ? "valid" : "invalid") << "\t"
                   << (outcome.photoPath.isEmpty() ? QStringLiteral("-") : escapedForLine(outcome.photoPath)) << "\n";
        } else {
            io.out << escapedForLine(file) << "\t"
                   << (outcome.problem.isEmpty() ? QStringLiteral("no barcode") : escapedForLine(outcome.problem)) << "\n";
        }
        io.out.flush();
    }
    CaptureDevice::removeStandIns();
    return everyFileGaveAVin ? Success : Negative;
}

} // namespace ZqtVin
