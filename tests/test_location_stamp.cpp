// The location stamp: its text, the box drawn on a photo, the one-shot position requests of the
// configuration singleton over an NMEA file, and `zqt-vin stamp`. (ZQTLocationUtils, which
// nothing in the component calls, has no test of its own.)
#include "Model/ZQTVINScanComponentConstants.h"
#include "Model/ZQTVINScanComponentConstantsLocation_p.h"
#include "platform/foundation/Authorization.h"
#include "platform/location/LocationManager.h"
#include "support/TemporaryMainBundle.h"
#include "support/TestData.h"
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QFontMetricsF>
#include <QGeoPositionInfo>
#include <QImageReader>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using Constants = ZQTVINScanComponentConstants;
using ZQTPlatform::Authorization;
using ZQTPlatform::Image;
using ZQTPlatform::LocationManager;
namespace Stamp = ZQTLocationStampPrivate;

namespace {

const QString coordinatesLine = QStringLiteral("Lat: 37.33233261  Long: -122.0312195");
const QString sampleText = QStringLiteral("Mar 05, 2024  09:07:03 PST\n") + coordinatesLine;

// "$GPRMC,..." with its checksum: a fix at 37.33233141 N, 122.0312186 W, then two more to the
// north-east, one second apart.
QByteArray nmeaFixes()
{
    QByteArray all;
    const char *bodies[] = {"GPRMC,120000.00,A,3719.939885,N,12201.873116,W,0.0,0.0,050324,,,A",
                            "GPRMC,120001.00,A,3720.000000,N,12201.000000,W,0.0,0.0,050324,,,A",
                            "GPRMC,120002.00,A,3721.000000,N,12200.000000,W,0.0,0.0,050324,,,A"};
    for (const char *body : bodies) {
        char sum = 0;
        for (const char *c = body; *c; ++c)
            sum ^= *c;
        all += '$' + QByteArray(body) + '*' + QByteArray::number(uchar(sum), 16).toUpper().rightJustified(2, '0') + "\r\n";
    }
    return all;
}

QImage greyPicture(int width, int height)
{
    return TestData::filled(width, height, QColor(120, 130, 140));
}

qreal textWidth(qreal size, const QString &text)
{
    return QFontMetricsF(Stamp::stampFont(size)).size(0, text).width();
}

// The black box's left edge on the top row: the first black pixel from the left.
int boxLeft(const QImage &stamped)
{
    for (int x = 0; x < stamped.width(); ++x)
        if (stamped.pixelColor(x, 0) == Qt::black)
            return x;
    return -1;
}

QGeoPositionInfo fixAt(double latitude, double longitude, int second)
{
    return QGeoPositionInfo(QGeoCoordinate(latitude, longitude), QDateTime(QDate(2024, 3, 5), QTime(12, 0, second), Qt::UTC));
}

} // namespace

TEST(LocationStampText, FloatCoordinatesDateLineAndZoneAreExactAndTheBoxSpansJustOverAThirdOfTheWidth)
{
    const QTimeZone pacific("America/Los_Angeles");
    EXPECT_EQ(Stamp::stampText(QDateTime(QDate(2024, 3, 5), QTime(9, 7, 3), pacific), pacific, 37.33233141f,
                               -122.0312186f),
              sampleText);
    // The moment is shown in the zone given, with that zone's abbreviation at that moment.
    const QDateTime noonUtc(QDate(2024, 7, 1), QTime(12, 0, 0), Qt::UTC);
    EXPECT_EQ(Stamp::stampText(noonUtc, pacific, 0.1f, 0.0f), "Jul 01, 2024  05:00:00 PDT\nLat: 0.1000000015  Long: 0");
    // Numbers and month names do not follow the application's locale.
    const QLocale savedLocale;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(Stamp::stampText(noonUtc, QTimeZone("Asia/Kolkata"), -33.5f, 151.25f),
              "Jul 01, 2024  17:30:00 IST\nLat: -33.5  Long: 151.25");
    QLocale::setDefault(savedLocale);

    // The box spans just over a third of the width plus five per cent, drawn at scale 1.
    // Too narrow for even the smallest size: 9 points, and the box overflows to the left.
    EXPECT_EQ(Stamp::stampFontSize(sampleText, 60), 9.0);
    EXPECT_EQ(Constants::getSuperImposedImage(Image(greyPicture(60, 600)), sampleText).bitmap().size(), QSize(60, 600));
    qreal previousSize = 9.0;
    for (const int width : {800, 2000}) {
        SCOPED_TRACE(width);
        const QImage stamped = Constants::getSuperImposedImage(Image(greyPicture(width, 600)), sampleText).bitmap();
        ASSERT_EQ(stamped.size(), QSize(width, 600));
        const qreal size = Stamp::stampFontSize(sampleText, width);
        const qreal textW = textWidth(size, sampleText);
        EXPECT_GT(textW, 0.33 * width);
        EXPECT_LE(textWidth(size - 2.0, sampleText), 0.33 * width) << "the smallest size past a third";
        EXPECT_GT(size, previousSize);
        previousSize = size;

        const int left = boxLeft(stamped);
        EXPECT_NEAR(width - left, 1.05 * textW, 1.0);
        const qreal textH = QFontMetricsF(Stamp::stampFont(size)).size(0, sampleText).height();
        int bottom = 0;
        while (stamped.pixelColor(left + 1, bottom) == Qt::black)
            ++bottom;
        EXPECT_NEAR(bottom, 1.1 * textH, 1.0);
        // Outside the box the picture is unchanged.
        EXPECT_EQ(stamped.pixelColor(left - 2, 2), QColor(120, 130, 140));
        EXPECT_EQ(stamped.pixelColor(width - 1, bottom + 2), QColor(120, 130, 140));
    }
    // Drawn at scale 1, in points.
    const Image scaled = Constants::getSuperImposedImage(Image(greyPicture(800, 400), 2.0), sampleText);
    EXPECT_EQ(std::make_pair(scaled.scale(), scaled.bitmap().size()), std::make_pair(qreal(1.0), QSize(400, 200)));
}

TEST(LocationStamp, TextRequestAnswersOnceWithTheFirstFixAndStopsAndPhotosAreStampedWithIt)
{
    // Positions come from the test's own NMEA file; no source or answer is left behind.
    const QTemporaryDir dir;
    LocationManager::setNmeaFile(writeTestFile(dir.filePath("fixes.nmea"), nmeaFixes()));
    const auto cleanUp = qScopeGuard([] {
        LocationManager::setNmeaFile(QString());
        Authorization::reset();
    });
    Constants *constants = Constants::sharedInstance();
    QList<QPair<bool, QString>> replaced, answers;
    constants->getTextOverlayWithLatLongDate([&](bool ok, const QString &text) { replaced.append({ok, text}); });
    constants->getTextOverlayWithLatLongDate([&](bool ok, const QString &text) { answers.append({ok, text}); });
    ASSERT_TRUE(constants->requestGetLatLong()) << "the latest request is pending";
    LocationManager *manager = constants->locationManager();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answers.isEmpty(); }, 5000));
    EXPECT_TRUE(answers.first().first);
    EXPECT_TRUE(answers.first().second.endsWith("\n" + coordinatesLine)) << answers.first().second.toStdString();
    EXPECT_FALSE(manager->isUpdatingLocation());
    EXPECT_FALSE(constants->requestGetLatLong()) << "answered once, then cleared";

    // Positions with no request pending (enableLocationServices, a late callback) answer nothing.
    constants->enableLocationServices();
    LocationManager *enabled = constants->locationManager();
    EXPECT_TRUE(QTest::qWaitFor([&] { return enabled->location().isValid() && !enabled->isUpdatingLocation(); }, 5000));
    constants->locationManager(enabled, QList<QGeoPositionInfo>{fixAt(1, 2, 0)});
    constants->locationManager(enabled, ZQTPlatform::Error("kCLErrorDomain", 0, "unknown"));
    QTest::qWait(50);
    EXPECT_EQ(answers.size(), 1);
    EXPECT_TRUE(replaced.isEmpty());

    // A photo is stamped with the position, or comes back as it is when there is none.
    const Image input(greyPicture(900, 300));
    QList<QPair<QImage, bool>> outputs; // image, on the GUI thread
    const auto record = [&](const Image &image) { outputs.append({image.bitmap(), QThread::currentThread() == qApp->thread()}); };
    Constants::sharedInstance()->getSuperImposedImage(input, record);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !outputs.isEmpty(); }, 5000));
    EXPECT_TRUE(outputs.first().second);
    EXPECT_EQ(outputs.first().first.pixelColor(899, 0), Qt::black);
    EXPECT_EQ(outputs.first().first.pixelColor(0, 299), QColor(120, 130, 140));

    // Location use denied: the platform reports an error and the photo comes back unstamped.
    Authorization::setLocationStatus(Authorization::LocationStatus::Denied);
    Constants::sharedInstance()->getSuperImposedImage(input, record);
    ASSERT_TRUE(QTest::qWaitFor([&] { return outputs.size() == 2; }, 5000));
    EXPECT_EQ(outputs.last().first, input.bitmap()); // as without any source (ZqtVinStamp failures)
}

TEST(ZqtVinStamp, WritesAStampedCopyAsPngOrJpegAndFailuresHaveTheirOwnStatus)
{
    QTemporaryDir dir;
    const QString input = dir.filePath("in.png");
    ASSERT_TRUE(greyPicture(1200, 500).save(input));

    ZqtVinRun png = runZqtVin({"stamp", input, dir.filePath("out.png"), "--lat", "37.33233141", "--lon", "-122.0312186"});
    ASSERT_EQ(png.status, 0) << png.err.toStdString();
    const QJsonObject answer = QJsonDocument::fromJson(png.out.toUtf8()).object();
    EXPECT_TRUE(answer.value("text").toString().endsWith("\n" + coordinatesLine));
    const QImage written(dir.filePath("out.png"));
    EXPECT_EQ(written.size(), QSize(1200, 500));
    EXPECT_EQ(written.pixelColor(1199, 0), Qt::black);
    EXPECT_EQ(written.pixelColor(0, 499), QColor(120, 130, 140));

    const QString fixes = writeTestFile(dir.filePath("fixes.nmea"), nmeaFixes());
    ZqtVinRun jpeg = runZqtVin({"stamp", input, dir.filePath("out.JPG"), "--nmea", fixes});
    ASSERT_EQ(jpeg.status, 0) << jpeg.err.toStdString();
    EXPECT_TRUE(jpeg.out.contains(coordinatesLine));
    EXPECT_EQ(QImageReader(dir.filePath("out.JPG")).format(), "jpeg");

    // Failures have their own status (usage errors: test_command_line_manners.cpp).
    const QString out = dir.filePath("failed.png");
    EXPECT_EQ(runZqtVin({"stamp", dir.filePath("none.png"), out, "--lat", "1", "--lon", "2"}).status, 3);
    ZqtVinRun noFix = runZqtVin({"stamp", input, out, "--nmea", dir.filePath("none.nmea")});
    EXPECT_EQ(noFix.status, 3);
    EXPECT_TRUE(noFix.err.contains("no position"));
    EXPECT_EQ(runZqtVin({"stamp", input, dir.filePath("no/such/dir/out.png"), "--lat", "1", "--lon", "2"}).status, 3);
    EXPECT_FALSE(QFile::exists(out));
}
