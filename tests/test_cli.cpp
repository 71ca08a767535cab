// The zqt-vin command-line tool, run as a separate process the way scripts use it.
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

// A host resource folder holding a Default_Settings.plist with the given body.
void writeHostSettings(const QTemporaryDir &dir, const QByteArray &dictBody)
{
    QFile file(dir.filePath("Default_Settings.plist"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
               "<plist version=\"1.0\"><dict>" + dictBody + "</dict></plist>\n");
}

} // namespace

TEST(ZqtVinCheck, PrintsOneVerdictPerArgumentAndExitsByTheWorstOne)
{
    ZqtVinRun all = runZqtVin({"check", "1HGCM82633A004352", "1M8GDM9AXKP042788"});
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(all.out, "1HGCM82633A004352\tvalid\n1M8GDM9AXKP042788\tvalid\n");

    ZqtVinRun mixed = runZqtVin({"check", "1HGCM82633A004352", "1HGCM82634A004352"});
    EXPECT_EQ(mixed.status, 1);
    EXPECT_EQ(mixed.out, "1HGCM82633A004352\tvalid\n1HGCM82634A004352\tinvalid\n");

    ZqtVinRun json = runZqtVin({"check", "--json", "1M8GDM9AAKP042788"});
    EXPECT_EQ(json.status, 1);
    const QJsonObject line = QJsonDocument::fromJson(json.out.trimmed().toUtf8()).object();
    EXPECT_EQ(line.value("input").toString(), "1M8GDM9AAKP042788");
    EXPECT_EQ(line.value("valid").toBool(true), false);
    // The check's diagnostics go to the log (stderr), never into the machine-readable output.
    EXPECT_TRUE(json.err.contains("found illegal check digit A"));
}

TEST(ZqtVinCheck, UsageErrorsExitWithTwo)
{
    EXPECT_EQ(runZqtVin({}).status, 2);
    ZqtVinRun noVin = runZqtVin({"check", "--json"});
    EXPECT_EQ(noVin.status, 2);
    EXPECT_TRUE(noVin.err.contains("usage"));
    EXPECT_EQ(runZqtVin({"frobnicate"}).status, 2);
    EXPECT_EQ(runZqtVin({"config", "get"}).status, 2);
    EXPECT_EQ(runZqtVin({"config", "get", "TextTitle", "--as", "colour"}).status, 2);
}

TEST(ZqtVinConfig, ReadsTheHostFileBeforeTheFrameworkFile)
{
    QTemporaryDir host;
    writeHostSettings(host, "<key>TextTitle</key><string>Host title</string>"
                            "<key>Theme</key><dict><key>ManualVINButtonColor</key><string>#FF8800</string></dict>"
                            "<key>ManualVINButtonBorderColor</key><string></string>"
                            "<key>Flash</key><dict><key>TextFlashButtonArray</key>"
                            "<array><string>Aus</string><string>An</string></array></dict>");
    const QString dir = host.path();
    EXPECT_EQ(runZqtVin({"config", "get", "TextTitle", "--bundle", dir}).out, "Host title\n");
    EXPECT_EQ(runZqtVin({"config", "get", "ManualVINButtonColor", "--as", "color", "--bundle", dir}).out, "#FF8800FF\n");
    // An empty host value wins over the framework's and reads as the clear colour.
    EXPECT_EQ(runZqtVin({"config", "get", "ManualVINButtonBorderColor", "--as", "color", "--bundle", dir}).out,
              "#00000000\n");
    EXPECT_EQ(runZqtVin({"config", "get", "TextFlashButtonArray", "--as", "array", "--bundle", dir}).out,
              "[\"Aus\",\"An\"]\n");
    EXPECT_EQ(runZqtVin({"config", "get", "NoSuchKey", "--bundle", dir}).out, "(null)\n");
    EXPECT_EQ(runZqtVin({"config", "get", "NoSuchKey", "--as", "color"}).out, "#000000FF\n");
    EXPECT_EQ(runZqtVin({"config", "get", "NoSuchKey", "--as", "bool"}).out, "false\n");
    // Without a host value the framework's own value shows through.
    ZqtVinRun framework = runZqtVin({"config", "get", "TextTitle"});
    EXPECT_EQ(framework.status, 0);
    EXPECT_NE(framework.out, "(null)\n");
    EXPECT_NE(framework.out, "Host title\n");
}

TEST(ZqtVinConfig, AValueOfTheWrongKindFailsWithALineNamingKeyAndFile)
{
    QTemporaryDir host;
    writeHostSettings(host, "<key>Flash</key><dict><key>TextFlashButtonArray</key><string>Off</string></dict>");
    ZqtVinRun run = runZqtVin({"config", "get", "TextFlashButtonArray", "--as", "array", "--bundle", host.path()});
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_TRUE(run.err.contains("TextFlashButtonArray")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("Default_Settings.plist")) << run.err.toStdString();

    EXPECT_EQ(runZqtVin({"config", "get", "TextTitle", "--bundle", host.filePath("missing")}).status, 2);
}
