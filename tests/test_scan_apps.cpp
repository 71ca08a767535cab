// The capture app and zqt-vin scan, run as a user runs them: headless over the shipped sample
// clip, pictures and files that cannot be scanned.
#include "BarcodeArt.h"
#include "VinTextArt.h"
#include "support/TemporaryMainBundle.h"
#include "support/ZqtVinRun.h"
#include "support/TestData.h"

#include "Utils/ZQTVINScanUtils.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

const QString sampleVin = QStringLiteral("1HGCM82633A004352");

QJsonObject jsonLine(const QString &line)
{
    return QJsonDocument::fromJson(line.toUtf8()).object();
}

} // namespace

TEST(CaptureApp, ScansTheSampleClipReportsOneJsonLineStoresTheVinPhotoAndGivesUpOnOtherSources)
{
    const ZqtVinRun run = runZqtVinCapture({"--claim", "CLM-APP", "--source", ZQT_SAMPLE_CLIP, "--exit-on-result",
                                            "--timeout", "50"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QStringList lines = run.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 1) << run.out.toStdString();
    const QJsonObject report = jsonLine(lines.first());
    EXPECT_EQ(report.value("vin").toString(), sampleVin);
    EXPECT_TRUE(report.value("isVINScanned").toBool());
    EXPECT_TRUE(report.value("isVINValid").toBool());
    EXPECT_TRUE(report.value("error").isNull());
    const QString photo = ZQTVINScanUtils::getPhotoPathWithClaimId("CLM-APP", "VIN");
    EXPECT_TRUE(QFileInfo(photo).isFile());
    EXPECT_TRUE(run.err.contains(photo));

    // It refuses missing sources and gives up on one without a VIN after its timeout.
    const ZqtVinRun missing = runZqtVinCapture({"--claim", "C", "--source", "/nonexistent/clip.webm"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_TRUE(missing.err.contains("/nonexistent/clip.webm"));

    QTemporaryDir dir;
    const QString blank = dir.filePath("blank.png");
    ASSERT_TRUE(TestData::filled(640, 480, Qt::lightGray).save(blank));
    const ZqtVinRun nothing = runZqtVinCapture({"--claim", "C", "--source", blank, "--exit-on-result", "--timeout", "2"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_TRUE(nothing.out.isEmpty());
}

TEST(CaptureApp, ReadTextReadsThePrintedSampleClip)
{
    const ZqtVinRun run = runZqtVinCapture({"--claim", "CLM-TEXT", "--source", ZQT_PRINTED_SAMPLE_CLIP, "--read-text",
                                            "--exit-on-result", "--timeout", "50"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QJsonObject report = jsonLine(run.out.split('\n', Qt::SkipEmptyParts).value(0));
    EXPECT_EQ(report.value("vin").toString(), sampleVin);
    EXPECT_TRUE(report.value("isVINScanned").toBool());
    EXPECT_TRUE(report.value("isVINValid").toBool());
    EXPECT_EQ(report.value("source").toString(), "text");
}

TEST(ZqtVinScan, OneLinePerFileSuccessOnlyWhenEveryFileGaveAVinAndReadTextReadsAPrintedVinPhoto)
{
    QTemporaryDir dir;
    const QString label = dir.filePath("label.png");
    const QString blank = dir.filePath("blank.png");
    ASSERT_TRUE(BarcodeArt::renderScene(BarcodeArt::renderSymbol(BarcodeArt::Symbology::Code128, "I" + sampleVin, 3), {})
                    .save(label));
    ASSERT_TRUE(TestData::filled(320, 240, Qt::white).save(blank));
    const QString text = writeTestFile(dir.filePath("notes.txt"), "not a picture");

    const ZqtVinRun plain = runZqtVin({"scan", "--claim", "CLM-B", ZQT_SAMPLE_CLIP, label});
    ASSERT_EQ(plain.status, 0) << plain.err.toStdString();
    const QStringList lines = plain.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    const QString photo = ZQTVINScanUtils::getPhotoPathWithClaimId("CLM-B", "VIN");
    EXPECT_EQ(lines[0], QString(ZQT_SAMPLE_CLIP) + "\t" + sampleVin + "\tvalid\t" + photo);
    EXPECT_EQ(lines[1], label + "\t" + sampleVin + "\tvalid\t" + photo);

    const ZqtVinRun json = runZqtVin({"scan", "--claim", "CLM-B", "--json", blank, label, text});
    EXPECT_EQ(json.status, 1);
    const QStringList jsonLines = json.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(jsonLines.size(), 3) << json.out.toStdString();
    EXPECT_TRUE(jsonLine(jsonLines[0]).value("vin").isNull());
    EXPECT_EQ(jsonLine(jsonLines[0]).value("result").toString(), "no barcode");
    EXPECT_EQ(jsonLine(jsonLines[1]).value("vin").toString(), sampleVin);
    EXPECT_EQ(jsonLine(jsonLines[1]).value("source").toString(), "barcode");
    EXPECT_EQ(jsonLine(jsonLines[1]).value("photo").toString(), photo);
    EXPECT_TRUE(jsonLine(jsonLines[2]).value("vin").isNull());
    EXPECT_EQ(jsonLine(jsonLines[2]).value("file").toString(), text);

    // With --read-text a printed VIN is read from a photo.
    const QString plate = dir.filePath("plate.jpg");
    VinTextArt::Scene scene;
    scene.vin = QStringLiteral("19XFC1F7XGE028370");
    scene.carrier = VinTextArt::Carrier::EmbossedPlate;
    scene.textHeight = 26;
    scene.tiltDegrees = -2;
    scene.noiseSigma = 3;
    ASSERT_TRUE(VinTextArt::renderScene(scene).save(plate, nullptr, 85));
    const ZqtVinRun run = runZqtVin({"scan", "--claim", "CLM-PLATE", "--json", "--read-text", plate});
    ASSERT_EQ(run.status, 0) << run.out.toStdString() << run.err.toStdString();
    const QJsonObject report = jsonLine(run.out.split('\n', Qt::SkipEmptyParts).value(0));
    EXPECT_EQ(report.value("vin").toString(), scene.vin);
    EXPECT_TRUE(report.value("isVINValid").toBool());
    EXPECT_EQ(report.value("source").toString(), "text");
    EXPECT_EQ(report.value("file").toString(), plate);
}
