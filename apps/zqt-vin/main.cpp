// zqt-vin: the component's operations for scripts and batch work.
#include "Commands.h"

#include "platform/foundation/Exception.h"

#include "AppEnvironment.h"

#include <QApplication>

namespace {

const char kUsage[] =
    "usage: zqt-vin <command> [arguments]\n"
    "commands:\n"
    "  check [--json] VIN...                  check each VIN's characters and check digit\n"
    "  config get KEY [--as KIND] [--bundle DIR]\n"
    "                                         print a configuration value; KIND is string (default),\n"
    "                                         color, float, bool, array or dictionary; DIR is the\n"
    "                                         host's resource folder holding Default_Settings.plist\n"
    "  settings get|set|remove|clear [--claim ID] [--store FILE] [KEY [VALUE]]\n"
    "                                         read or change per-claim settings (the top level\n"
    "                                         without --claim); VALUE is read as JSON, else text;\n"
    "                                         output is JSON; FILE defaults to the tool's own store\n"
    "  photos list|path|delete --claim ID [TITLE]\n"
    "                                         list a claim's photos, or print the path of one or\n"
    "                                         delete it; output is JSON\n"
    "  photos add --claim ID --title TITLE IMAGE\n"
    "                                         store an image file as a claim photo (at most 800\n"
    "                                         pixels, JPEG) under the user's documents folder\n"
    "  scan --claim ID [--json] [--read-text] FILE...\n"
    "                                         run the barcode scan over each image or video file: one\n"
    "                                         line per file (VIN, validity, stored photo) or \"no\n"
    "                                         barcode\"; status 1 unless every file gave a VIN;\n"
    "                                         --read-text also reads printed VINs\n"
    "  stamp IN OUT (--lat LAT --lon LON | --nmea FILE)\n"
    "                                         write a copy of IN with the date, time and position\n"
    "                                         stamped at its top right; OUT ends in .jpg or .png\n";

} // namespace

int main(int argc, char **argv)
{
    // The tool never shows a window; fonts, images and screens work without a display.
    ZqtApps::prepareEnvironment(true);
    QApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);

    QTextStream out(stdout);
    QTextStream err(stderr);
    ZqtVin::Streams io{out, err};
    if (args.isEmpty())
        return ZqtVin::usageError(io, QStringLiteral("no command given"), kUsage);
    if (args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
        out << kUsage;
        return ZqtVin::Success;
    }

    const QString command = args.takeFirst();
    try {
        if (command == QLatin1String("check"))
            return ZqtVin::runCheck(args, io);
        if (command == QLatin1String("config"))
            return ZqtVin::runConfig(args, io);
        if (command == QLatin1String("settings"))
            return ZqtVin::runSettings(args, io);
        if (command == QLatin1String("photos"))
            return ZqtVin::runPhotos(args, io);
        if (command == QLatin1String("scan"))
            return ZqtVin::runScan(args, io);
        if (command == QLatin1String("stamp"))
            return ZqtVin::runStamp(args, io);
    } catch (const ZQTPlatform::Exception &e) {
        out.flush();
        err << "zqt-vin: " << e.name() << ": " << e.reason() << "\n";
        return ZqtVin::Failure;
    }
    return ZqtVin::usageError(io, QStringLiteral("unknown command \"%1\"").arg(command), kUsage);
}
