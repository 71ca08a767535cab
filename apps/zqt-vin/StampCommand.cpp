// zqt-vin stamp IN OUT (--lat LAT --lon LON | --nmea FILE)
//
// Writes a copy of the image IN to OUT with the location stamp in its top-right corner: the
// date and time now (in the local time zone) and the position, given as decimal degrees or read
// from an NMEA file (its first fix). OUT's suffix picks the format: .jpg/.jpeg (JPEG) or .png.
// Prints {"path", "text", "width", "height"}.
// Exit status: 0 written, 2 usage error (also a bad coordinate or suffix), 3 the image cannot
// be read, the NMEA file gives no position, or OUT cannot be written.
#include "Commands.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/location/LocationManager.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonObject>
#include <QSaveFile>
#include <QTimer>

#include <optional>

namespace ZqtVin {

namespace {

const char kUsage[] = "usage: zqt-vin stamp IN OUT (--lat LAT --lon LON | --nmea FILE)\n"
                      "  LAT in -90..90 and LON in -180..180 (decimal degrees), or an NMEA file; OUT ends in .jpg,\n"
                      "  .jpeg or .png\n";
constexpr int kPositionTimeoutMs = 15000;

using Constants = ZQTVINScanComponentConstants;

struct Request
{
    QString input;
    QString output;
    QByteArray format; // "jpeg" or "png"
    std::optional<double> latitude;
    std::optional<double> longitude;
    QString nmeaFile;
};

std::optional<double> degrees(const QString &text, double limit)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || value < -limit || value > limit)
        return std::nullopt;
    return value;
}

// Parses the arguments; the problem on a usage error, else empty.
QString parseRequest(const QStringList &args, Request &request)
{
    const Arguments parsed =
        parseArguments(args, {QStringLiteral("--lat"), QStringLiteral("--lon"), QStringLiteral("--nmea")});
    if (!parsed.problem.isEmpty())
        return parsed.problem;
    if (parsed.has("--lat") && !(request.latitude = degrees(parsed.value("--lat"), 90.0)))
        return QStringLiteral("LAT must be decimal degrees in -90..90, not \"%1\"").arg(parsed.value("--lat"));
    if (parsed.has("--lon") && !(request.longitude = degrees(parsed.value("--lon"), 180.0)))
        return QStringLiteral("LON must be decimal degrees in -180..180, not \"%1\"").arg(parsed.value("--lon"));
    request.nmeaFile = parsed.value("--nmea");
    if (parsed.operands.size() != 2)
        return QStringLiteral("give IN and OUT");
    request.input = parsed.operands.at(0);
    request.output = parsed.operands.at(1);
    const QString suffix = QFileInfo(request.output).suffix().toLower();
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg"))
        request.format = "jpeg";
    else if (suffix == QLatin1String("png"))
        request.format = "png";
    else
        return QStringLiteral("OUT must end in .jpg, .jpeg or .png");
    const bool coordinates = request.latitude && request.longitude;
    const bool anyCoordinate = request.latitude || request.longitude;
    if (parsed.has("--nmea") ? anyCoordinate : !coordinates)
        return QStringLiteral("give either --lat and --lon, or --nmea");
    return {};
}

// The stamp text for the NMEA file's first fix, through the component's position request;
// empty when the file gives none in time.
QString stampTextFromNmea(const QString &file)
{
    ZQTPlatform::LocationManager::setNmeaFile(file);
    QString text;
    QEventLoop loop;
    // The limit runs from before the request, which opens the file.
    QTimer::singleShot(kPositionTimeoutMs, &loop, &QEventLoop::quit);
    bool answered = false;
    Constants::sharedInstance()->getTextOverlayWithLatLongDate([&](bool success, const QString &answer) {
        if (success)
            text = answer;
        answered = true;
        loop.quit();
    });
    if (!answered)
        loop.exec();
    return text;
}

bool writeImage(const QImage &bitmap, const Request &request, QString &error)
{
    QSaveFile file(request.output);
    if (!file.open(QIODevice::WriteOnly)) {
        error = writeFailure(request.output, file.errorString());
        return false;
    }
    QImageWriter writer(&file, request.format);
    if (request.format == "jpeg")
        writer.setQuality(90);
    if (!writer.write(bitmap)) {
        // The writer reports a failed device write as "Unknown error"; the file knows better.
        error = writeFailure(request.output, file.error() != QFileDevice::NoError ? file.errorString() : writer.errorString());
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        error = writeFailure(request.output, file.errorString());
        return false;
    }
    return true;
}

} // namespace

int runStamp(const QStringList &args, Streams io)
{
    Request request;
    if (const std::optional<int> status = endEarly(args, parseRequest(args, request), io, kUsage))
        return *status;
    if (refusedAsSvg(request.input, io))
        return Failure;
    const ZQTPlatform::Image image = ZQTPlatform::Image::imageWithContentsOfFile(request.input);
    if (image.isNull()) {
        io.err << "zqt-vin: cannot read an image from " << request.input << "\n";
        return Failure;
    }
    const QString text = request.nmeaFile.isEmpty()
        ? Constants::getTextOverlayWithLatitude(float(*request.latitude), float(*request.longitude))
        : stampTextFromNmea(request.nmeaFile);
    if (text.isEmpty()) {
        io.err << "zqt-vin: no position from " << request.nmeaFile << "\n";
        return Failure;
    }
    const QImage stamped = Constants::getSuperImposedImage(image, text).bitmap();
    QString error;
    if (!writeImage(stamped, request, error)) {
        io.err << "zqt-vin: cannot write " << request.output << ": " << error << "\n";
        return Failure;
    }
    printJson(QJsonObject{{"path", request.output}, {"text", text}, {"width", stamped.width()}, {"height", stamped.height()}},
              io.out);
    return Success;
}

} // namespace ZqtVin
