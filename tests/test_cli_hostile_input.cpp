// zqt-vin given hostile input: barcode text that would forge output lines or drive the terminal,
// an SVG that would pull another file into a stored photo, a video that never gives a picture.
#include "BarcodeArt.h"
#include "support/TemporaryMainBundle.h"
#include "support/ZqtVinRun.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>

namespace {

// Characters below U+0020 other than the tab between fields and the line feed ending a line.
bool holdsStrayControl(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x20 && c != '\t' && c != '\n'; });
}

} // namespace

TEST(ZqtVinHostileInput, ScanEscapesControlCharactersOfTheBarcode)
{
    const QTemporaryDir dir;
    // Not a VIN in any of the ways the screen reads one, so the whole payload is reported.
    const QString forged = QStringLiteral("X\tvalid\t-\nforged.png\t1HGCM82633A004352\tvalid\t-\x1b[2JZ");
    const QString picture = dir.filePath("label.png");
    ASSERT_TRUE(BarcodeArt::renderSymbol(BarcodeArt::Symbology::Code128, forged, 3).save(picture));

    const ZqtVinRun run = runZqtVin({"scan", "--claim", "C-1", picture});
    EXPECT_EQ(run.out.count('\n'), 1) << run.out.toStdString();
    EXPECT_EQ(run.out.count('\t'), 3) << run.out.toStdString();
    EXPECT_FALSE(holdsStrayControl(run.out)) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("\\tvalid\\t-\\nforged.png\\t"))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("\\x1b[2J"))) << run.out.toStdString();
}

TEST(ZqtVinHostileInput, PhotosAddAndStampRefuseSvgThatDrawsInAnotherFile)
{
    const QTemporaryDir dir;
    ASSERT_TRUE(TestData::filled(200, 100, Qt::red).save(dir.filePath("secret.png")));
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                           "width=\"200\" height=\"100\"><image width=\"200\" height=\"100\" xlink:href=\""
                           + QFile::encodeName(dir.filePath("secret.png")) + "\"/></svg>";
    for (const char *name : {"picture.svg", "picture.png"}) {
        const ZqtVinRun run = runZqtVin({"photos", "add", "--claim", "C-1", "--title", "door", writeTestFile(dir.filePath(name), svg)});
        EXPECT_EQ(run.status, 3) << name << run.out.toStdString();
        EXPECT_TRUE(run.err.contains("SVG")) << run.err.toStdString();
        const ZqtVinRun stamp = runZqtVin({"stamp", dir.filePath(name), dir.filePath("stamped.jpg"), "--lat", "1", "--lon", "2"});
        EXPECT_EQ(stamp.status, 3) << name << stamp.out.toStdString();
        EXPECT_TRUE(stamp.err.contains("SVG")) << stamp.err.toStdString();
    }
    EXPECT_EQ(runZqtVin({"photos", "list", "--claim", "C-1"}).status, 1);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("stamped.jpg")));
}

TEST(ZqtVinHostileInput, ScanGivesUpOnAVideoThatShowsNoPicture)
{
    // The sample clip's header followed by noise: the player neither shows a frame nor ends.
    const QTemporaryDir dir;
    QFile clip(QStringLiteral(ZQT_SAMPLE_CLIP));
    ASSERT_TRUE(clip.open(QIODevice::ReadOnly));
    QByteArray damaged = clip.read(3000);
    QRandomGenerator noise(16);
    while (damaged.size() < 200000)
        damaged.append(char(noise.bounded(256)));
    const QString path = writeTestFile(dir.filePath("damaged.webm"), damaged);

    const ZqtVinRun run = runZqtVin({"scan", "--claim", "C-1", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, path + "\tgave no picture within 5 seconds\n");
}
