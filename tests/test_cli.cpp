// The zqt-vin command-line tool, run as a separate process the way scripts use it.
#include "support/TemporaryMainBundle.h"
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

TEST(ZqtVinCheck, PrintsOneVerdictPerArgumentAndExitsByTheWorstOne)
{
    const struct { QStringList args; int status; const char *out; } runs[] = {
        {{"check", "1HGCM82633A004352", "1M8GDM9AXKP042788"}, 0, "1HGCM82633A004352\tvalid\n1M8GDM9AXKP042788\tvalid\n"},
        {{"check", "1HGCM82633A004352", "1HGCM82634A004352"}, 1, "1HGCM82633A004352\tvalid\n1HGCM82634A004352\tinvalid\n"},
    };
    for (const auto &run : runs) {
        const ZqtVinRun done = runZqtVin(run.args);
        EXPECT_EQ(done.status, run.status) << run.args.join(' ').toStdString();
        EXPECT_EQ(done.out, run.out) << run.args.join(' ').toStdString();
    }

    const ZqtVinRun json = runZqtVin({"check", "--json", "1M8GDM9AAKP042788"});
    EXPECT_EQ(json.status, 1);
    const QJsonObject line = QJsonDocument::fromJson(json.out.trimmed().toUtf8()).object();
    EXPECT_EQ(line.value("input").toString(), "1M8GDM9AAKP042788");
    EXPECT_EQ(line.value("valid").toBool(true), false);
    // The check's diagnostics go to the log (stderr), never into the machine-readable output.
    EXPECT_TRUE(json.err.contains("found illegal check digit A"));
}

TEST(ZqtVinConfig, ReadsTheHostFileBeforeTheFrameworkFileAndNamesKeyAndFileOfAWrongKind)
{
    const TemporaryMainBundle host;
    host.writeSettings("<key>TextTitle</key><string>Host title</string>"
                            "<key>Theme</key><dict><key>ManualVINButtonColor</key><string>#FF8800</string></dict>"
                            "<key>ManualVINButtonBorderColor</key><string></string>"
                            "<key>Flash</key><dict><key>TextFlashButtonArray</key>"
                            "<array><string>Aus</string><string>An</string></array></dict>");
    const QStringList bundle{"--bundle", host.path()};
    const std::pair<QStringList, const char *> reads[] = {
        {QStringList{"TextTitle"} + bundle, "Host title\n"},
        {QStringList{"ManualVINButtonColor", "--as", "color"} + bundle, "#FF8800FF\n"},
        // An empty host value wins over the framework's and reads as the clear colour.
        {QStringList{"ManualVINButtonBorderColor", "--as", "color"} + bundle, "#00000000\n"},
        {QStringList{"TextFlashButtonArray", "--as", "array"} + bundle, "[\"Aus\",\"An\"]\n"},
        {QStringList{"NoSuchKey"} + bundle, "(null)\n"},
        {{"NoSuchKey", "--as", "color"}, "#000000FF\n"},
        {{"NoSuchKey", "--as", "bool"}, "false\n"},
    };
    for (const auto &[args, out] : reads)
        EXPECT_EQ(runZqtVin(QStringList{"config", "get"} + args).out, out) << args.join(' ').toStdString();
    // Without a host value the framework's own value shows through.
    const ZqtVinRun framework = runZqtVin({"config", "get", "TextTitle"});
    EXPECT_EQ(framework.status, 0);
    EXPECT_NE(framework.out, "(null)\n");
    EXPECT_NE(framework.out, "Host title\n");

    host.writeSettings("<key>Flash</key><dict><key>TextFlashButtonArray</key><string>Off</string></dict>");
    const ZqtVinRun run = runZqtVin(QStringList{"config", "get", "TextFlashButtonArray", "--as", "array"} + bundle);
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_TRUE(run.err.contains("TextFlashButtonArray") && run.err.contains("Default_Settings.plist")) << run.err.toStdString();
    EXPECT_EQ(runZqtVin({"config", "get", "TextTitle", "--bundle", host.path() + "/missing"}).status, 2);
}
