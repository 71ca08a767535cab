// zqt-vin-capture: the capture screen in a window, as a host app shows it. Each delegate call is
// printed as one JSON line on standard output; the VIN photo goes to the claim's folder. After
// each report a result card replaces the screen: scan again (a fresh screen) or done (quit);
// with --exit-on-result the app quits at the first report instead.
//
// The video comes from --source (a video or picture file), else the machine's camera, else the
// sample clip the project ships.
#include "AppEnvironment.h"
#include "ResultCard.h"
#include "ScanHost.h"

#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/DeviceProfile.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonDocument>
#include <QTextStream>
#include <QTimer>

using namespace ZQTPlatform;

namespace {

// Exit statuses.
enum { ResultReported = 0, NoResult = 1, UsageError = 2 };

// "iPhone 8, iPhone X, ..." for the help text.
QString phoneNames()
{
    QStringList names;
    for (const DeviceProfile &profile : DeviceProfile::phoneProfiles())
        names << profile.name;
    return names.join(QStringLiteral(", "));
}

// The options, with the help text. Parsed before the application object exists, so that --help
// and usage errors need no display.
void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral("Shows the VIN capture screen for a claim."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("claim"), QStringLiteral("The claim id (required)."), QStringLiteral("ID")},
        {QStringLiteral("source"), QStringLiteral("A video or picture file standing in for the camera."),
         QStringLiteral("FILE")},
        {QStringLiteral("exit-on-result"), QStringLiteral("Quit after the first delegate call (status 0).")},
        {QStringLiteral("timeout"),
         QStringLiteral("Quit after SECONDS: status 0 when something was reported, else 1."),
         QStringLiteral("SECONDS")},
        {QStringLiteral("manual"), QStringLiteral("Open with the manual VIN prompt.")},
        {QStringLiteral("landscape"), QStringLiteral("The screen's landscape mode.")},
        {QStringLiteral("modal"), QStringLiteral("Present the screen instead of pushing it.")},
        {QStringLiteral("read-text"), QStringLiteral("Also read printed VINs that carry no barcode.")},
        {QStringLiteral("device"),
         QStringLiteral("The phone to imitate: %1, or a screen size in points (default iPhone X).").arg(phoneNames()),
         QStringLiteral("NAME|WxH")},
        {QStringLiteral("adjuster-name"), QStringLiteral("The claim's adjuster, shown by the menu."), QStringLiteral("NAME")},
        {QStringLiteral("adjuster-role"), QStringLiteral("The adjuster's role."), QStringLiteral("ROLE")},
        {QStringLiteral("adjuster-phone"), QStringLiteral("The adjuster's phone number."), QStringLiteral("PHONE")},
        {QStringLiteral("adjuster-email"), QStringLiteral("The adjuster's e-mail address."), QStringLiteral("ADDRESS")},
        {QStringLiteral("claim-ref"), QStringLiteral("The customer's claim reference."), QStringLiteral("REF")},
        {QStringLiteral("screenshot"),
         QStringLiteral("Save the window as a PNG picture after two seconds and quit (status 0)."),
         QStringLiteral("FILE")},
    });
}

// What is wrong with the parsed options, or empty.
QString usageProblem(const QCommandLineParser &parser)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first());
    if (parser.value(QStringLiteral("claim")).isEmpty())
        return QStringLiteral("--claim is required");
    if (parser.isSet(QStringLiteral("device")) && !DeviceProfile::profileNamed(parser.value(QStringLiteral("device"))))
        return QStringLiteral("unknown device \"%1\": give one of %2, or WxH in points")
            .arg(parser.value(QStringLiteral("device")), phoneNames());
    if (parser.isSet(QStringLiteral("timeout"))) {
        bool ok = false;
        const int seconds = parser.value(QStringLiteral("timeout")).toInt(&ok);
        if (!ok || seconds <= 0)
            return QStringLiteral("--timeout needs a whole number of seconds above 0, not \"%1\"")
                .arg(parser.value(QStringLiteral("timeout")));
    }
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    QTextStream err(stderr);
    QCommandLineParser parser;
    addOptions(parser);
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const bool parsed = parser.parse(arguments);
    // Without an application object the help text cannot know the program's name.
    const QString usage = parser.helpText().replace(QStringLiteral("<executable_name>"), QStringLiteral("zqt-vin-capture"));
    if (parsed && parser.isSet(QStringLiteral("help"))) {
        QTextStream(stdout) << usage;
        return ResultReported;
    }
    const QString problem = parsed ? usageProblem(parser) : parser.errorText();
    if (!problem.isEmpty()) {
        err << "zqt-vin-capture: " << problem << "\n" << usage;
        return UsageError;
    }
    const DeviceProfile phone = *DeviceProfile::profileNamed(
        parser.isSet(QStringLiteral("device")) ? parser.value(QStringLiteral("device")) : QStringLiteral("iPhone X"));
    const QString claimId = parser.value(QStringLiteral("claim"));

    ZqtApps::prepareEnvironment(false);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zqt-vin-capture"));

    QString source = parser.value(QStringLiteral("source"));
    if (source.isEmpty() && !CaptureDevice::defaultDeviceWithMediaType(CaptureDevice::mediaTypeVideo())) {
        source = ZqtApps::sampleClipPath();
        err << "zqt-vin-capture: no camera; scanning the sample clip " << source << "\n";
    }
    if (!source.isEmpty() && !CaptureDevice::addStandIn(source)) {
        err << "zqt-vin-capture: cannot use " << source << " as the video source\n";
        return UsageError;
    }

    DeviceProfile::setCurrent(parser.isSet(QStringLiteral("landscape")) ? phone.landscape() : phone);
    ZqtApps::ScanHostOptions options;
    options.claimId = claimId;
    options.manual = parser.isSet(QStringLiteral("manual"));
    options.landscape = parser.isSet(QStringLiteral("landscape"));
    options.modal = parser.isSet(QStringLiteral("modal"));
    options.readText = parser.isSet(QStringLiteral("read-text"));
    // Any adjuster detail gives the screen an adjuster (and the bar its menu).
    if (parser.isSet(QStringLiteral("adjuster-name")) || parser.isSet(QStringLiteral("adjuster-role"))
        || parser.isSet(QStringLiteral("adjuster-phone")) || parser.isSet(QStringLiteral("adjuster-email"))
        || parser.isSet(QStringLiteral("claim-ref"))) {
        ZQTVINScanAdjuster adjuster;
        adjuster.setRecipientName(parser.value(QStringLiteral("adjuster-name")));
        adjuster.setUserType(parser.value(QStringLiteral("adjuster-role")));
        adjuster.setRecipientPhone(parser.value(QStringLiteral("adjuster-phone")));
        adjuster.setRecipientEmailAddress(parser.value(QStringLiteral("adjuster-email")));
        adjuster.setCustClmRefID(parser.value(QStringLiteral("claim-ref")));
        options.adjuster = adjuster;
    }
    // No phone or mail application here: the panel's requests are printed.
    ZqtApps::UrlRequestPrinter urlRequests;
    ZqtApps::ScanHost host(options);
    if (!host.screen()) {
        err << "zqt-vin-capture: the capture screen could not be made\n";
        return NoResult;
    }
    // A full device while the VIN photo is saved raises on the capture thread: printed, status 4.
    host.reportUncaughtExceptions();

    const bool exitOnResult = parser.isSet(QStringLiteral("exit-on-result"));
    QTextStream out(stdout);
    bool reported = false;
    QObject::connect(&host, &ZqtApps::ScanHost::scanned, &app, [&](const ZqtApps::ScanResult &result) {
        reported = true;
        out << QJsonDocument(result.toJson()).toJson(QJsonDocument::Compact) << "\n";
        out.flush();
        const QString photo = host.vinPhotoPath();
        if (!photo.isEmpty())
            err << "zqt-vin-capture: VIN photo " << photo << "\n";
        err.flush();
        if (exitOnResult) {
            QApplication::exit(ResultReported);
            return;
        }
        // The person at the claim sees what was read and chooses: scan again or done.
        auto *card = new ZqtApps::ResultCard(result, photo);
        QObject::connect(card, &ZqtApps::ResultCard::scanAgainRequested, &host, &ZqtApps::ScanHost::startOver,
                         Qt::QueuedConnection);
        QObject::connect(card, &ZqtApps::ResultCard::doneRequested, &app, [] { QApplication::exit(ResultReported); });
        host.showInsteadOfScreen(card);
    });
    const int timeout = parser.value(QStringLiteral("timeout")).toInt();
    if (timeout > 0) {
        QTimer::singleShot(timeout * 1000, &app, [&] {
            if (reported) {
                QApplication::exit(ResultReported);
                return;
            }
            err << "zqt-vin-capture: nothing reported in " << timeout << " s\n";
            QApplication::exit(NoResult);
        });
    }

    const QString screenshot = parser.value(QStringLiteral("screenshot"));
    if (!screenshot.isEmpty()) {
        QTimer::singleShot(2000, &app, [&] {
            if (!host.window().grab().save(screenshot, "PNG")) {
                err << "zqt-vin-capture: cannot write " << screenshot << "\n";
                QApplication::exit(UsageError);
                return;
            }
            err << "zqt-vin-capture: window saved to " << screenshot << "\n";
            QApplication::exit(ResultReported);
        });
    }

    host.show(DeviceProfile::current().mainScreenBounds.toSize());
    return QApplication::exec();
}
