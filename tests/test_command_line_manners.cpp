// How both programs meet a person at a terminal: --help and -h answer on standard output with
// status 0, even where there is no display; every wrong invocation says what was wrong, shows
// the usage on standard error and exits with status 2.
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

namespace {

// The capture app where no display can be reached: a usage answer must not need one.
QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

struct Invocation
{
    bool capture; // zqt-vin-capture, else zqt-vin
    QStringList args;
    const char *expected; // in the usage (help) or in the complaint (usage error)
};

ZqtVinRun run(const Invocation &invocation)
{
    return invocation.capture ? runZqtVinCapture(invocation.args, withoutDisplay()) : runZqtVin(invocation.args);
}

std::string describe(const Invocation &invocation)
{
    return (invocation.capture ? "zqt-vin-capture " : "zqt-vin ") + invocation.args.join(' ').toStdString();
}

} // namespace

TEST(CommandLineManners, EveryProgramAndSubcommandAnswersHelpOnStandardOutputAndWrongInvocationsExitTwoWithTheUsage)
{
    const Invocation helps[] = {
        {false, {"-h"}, "usage: zqt-vin <command>"},
        {false, {"check", "--help"}, "usage: zqt-vin check"},
        {false, {"config", "get", "-h"}, "usage: zqt-vin config get"},
        {false, {"settings", "--help"}, "usage: zqt-vin settings"},
        {false, {"photos", "add", "--help"}, "usage: zqt-vin photos"},
        {false, {"scan", "-h"}, "usage: zqt-vin scan"},
        {false, {"stamp", "--help"}, "usage: zqt-vin stamp"},
        {true, {"--help"}, "Usage: zqt-vin-capture [options]"},
        {true, {"-h"}, "--claim <ID>"},
    };
    for (const Invocation &help : helps) {
        const ZqtVinRun done = run(help);
        EXPECT_EQ(done.status, 0) << describe(help) << "\n" << done.err.toStdString();
        EXPECT_TRUE(done.out.contains(help.expected)) << describe(help) << " printed:\n" << done.out.toStdString();
        EXPECT_TRUE(done.err.isEmpty()) << describe(help) << "\n" << done.err.toStdString();
    }

    // Wrong invocations say what was wrong, with the usage, and exit with status 2.
    const Invocation wrongs[] = {
        {false, {}, "no command given"},
        {false, {"frobnicate"}, "unknown command \"frobnicate\""},
        {false, {"check", "--strict", "1HGCM82633A004352"}, "unknown option \"--strict\""},
        {false, {"check", "--json"}, "no VIN given"},
        {false, {"config", "get", "TextTitle", "--as"}, "--as needs a value"},
        {false, {"config", "get", "TextTitle", "--as", "colour"}, "unknown kind \"colour\""},
        {false, {"config", "get", "TextTitle", "TextFlashButtonArray"}, "more than one KEY"},
        {false, {"settings", "set", "Key"}, "\"set\" takes a KEY and a VALUE"},
        {false, {"settings", "clear"}, "\"clear\" needs --claim"},
        {false, {"photos", "list"}, "--claim is required"},
        {false, {"photos", "add", "--claim", "C", "door.png"}, "\"add\" needs --title"},
        {false, {"scan", "label.png"}, "--claim is required"},
        {false, {"scan", "--claim", "C", "--read-fast", "label.png"}, "unknown option \"--read-fast\""},
        {false, {"stamp", "in.jpg", "out.jpg", "--lat", "north", "--lon", "3"}, "LAT must be decimal degrees"},
        {false, {"stamp", "in.jpg", "out.gif", "--lat", "1", "--lon", "3"}, "OUT must end in"},
        {false, {"stamp", "in.jpg", "out.jpg", "--lat", "1", "--lon", "2", "--nmea", "x.nmea"}, "give either --lat and --lon, or --nmea"},
        {true, {"--exit-on-result"}, "--claim is required"},
        {true, {"--claim", "C", "--timeout", "abc"}, "--timeout needs a whole number of seconds"},
        {true, {"--claim", "C", "--device", "nonsense"}, "unknown device \"nonsense\""},
        {true, {"--claim", "C", "--frobnicate"}, "Unknown option 'frobnicate'"},
        {true, {"--claim", "C", "extra"}, "unexpected argument \"extra\""},
    };
    for (const Invocation &wrong : wrongs) {
        const ZqtVinRun done = run(wrong);
        EXPECT_EQ(done.status, 2) << describe(wrong) << "\n" << done.err.toStdString();
        EXPECT_TRUE(done.err.contains(wrong.expected)) << describe(wrong) << " said:\n" << done.err.toStdString();
        EXPECT_TRUE(done.err.contains("usage", Qt::CaseInsensitive)) << describe(wrong);
        EXPECT_TRUE(done.out.isEmpty()) << describe(wrong) << " printed:\n" << done.out.toStdString();
    }
}
