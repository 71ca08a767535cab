// Images: EXIF orientation kept as the image's orientation, scale from "@2x"/"@3x" names,
// vector images at their natural size, lookup by name in a bundle, and the media-bundle
// lookup of imageWithBundle with its branch on the system version; an image view fitting its
// picture as the view and the picture change, from a copy that a worker scales smoothly.
#include "lib/Categories/Bundle+MYBundle.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/Image.h"
#include "platform/ui/ImageView.h"
#include "support/TemporaryMainBundle.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QTest>


using ZQTPlatform::Bundle;
using ZQTPlatform::DeviceProfile;
using ZQTPlatform::Image;

namespace {

QByteArray encoded(const QColor &color, const char *format = "PNG", const QSize &size = QSize(4, 4))
{
    return TestData::encoded(TestData::filled(size.width(), size.height(), color), format);
}

// A 40x20 JPEG with an APP1 "Exif" segment right after the start of the image: a big-endian TIFF
// whose only tag is the orientation (0x0112, one SHORT).
QByteArray jpegWithExifOrientation(quint16 orientation)
{
    QByteArray exif("\xFF\xE1\x00\x22" "Exif\0\0" "MM\0\x2a\0\0\0\x08\0\x01" "\x01\x12\0\x03\0\0\0\x01\0", 29);
    exif.append(char(orientation)).append(6, '\0');
    return encoded(Qt::red, "JPG", QSize(40, 20)).insert(2, exif);
}

QColor colourAt(const Image &image)
{
    return image.isNull() ? QColor() : image.bitmap().pixelColor(0, 0);
}

} // namespace

TEST(ImageDecoding, ExifOrientationBecomesTheImageOrientationWithoutRotatingPixels)
{
    using O = Image::Orientation;
    const QList<O> byExifValue = {O::Up,           O::UpMirrored, O::Down,          O::DownMirrored,
                                  O::LeftMirrored, O::Right,      O::RightMirrored, O::Left};
    for (quint16 exif = 1; exif <= 8; ++exif) {
        const Image image = Image::fromData(jpegWithExifOrientation(exif));
        ASSERT_FALSE(image.isNull()) << exif;
        EXPECT_EQ(image.imageOrientation(), byExifValue[exif - 1]) << exif;
        EXPECT_EQ(image.bitmap().size(), QSize(40, 20)) << exif;
    }
    EXPECT_EQ(Image::fromData(jpegWithExifOrientation(6), 2.0).size(), QSizeF(10, 20)) << "sideways, in points";
    EXPECT_TRUE(Image::fromData("not an image").isNull());
    EXPECT_TRUE(Image::imageWithContentsOfFile("/no/such/file.png").isNull());
}

TEST(ImageFiles, ScaleComesFromTheFileNameVectorsRenderAtNaturalSizeTimesScaleBareNamesFindFilesAndTheMediaBundleIsReadOnNewerSystems)
{
    TemporaryMainBundle dir;
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"10\">"
                           "<rect width=\"30\" height=\"10\" fill=\"#00ff00\"/></svg>";
    const QList<std::tuple<QString, QByteArray, qreal, QSize>> cases = {
        {"icon.png", encoded(Qt::blue, "PNG", QSize(40, 20)), 1.0, QSize(40, 20)},
        {"icon@2x.png", encoded(Qt::blue, "PNG", QSize(40, 20)), 2.0, QSize(20, 10)},
        {"icon@3x.png", encoded(Qt::blue, "PNG", QSize(42, 21)), 3.0, QSize(14, 7)},
        {"logo.svg", svg, 1.0, QSize(30, 10)},
        {"logo@3x.svg", svg, 3.0, QSize(30, 10)}};
    for (const auto &[name, bytes, scale, points] : cases) {
        const Image image = Image::imageWithContentsOfFile(dir.writeFile(name, bytes));
        EXPECT_EQ(image.scale(), scale) << name.toStdString();
        EXPECT_EQ(image.size(), QSizeF(points)) << name.toStdString();
    }
    const Image sharp = Image::imageWithContentsOfFile(dir.path() + "/logo@3x.svg");
    EXPECT_EQ(sharp.bitmap().size(), QSize(90, 30));
    EXPECT_EQ(colourAt(sharp), QColor(0, 255, 0));

    // Names without an extension try PNG, then the scaled file, then JPEG.
    dir.writeFile("badge@2x.png", encoded(Qt::red));
    const Bundle main = Bundle::mainBundle();
    EXPECT_EQ(Image::imageNamed("badge", main).scale(), 2.0);

    dir.writeFile("badge.png", encoded(Qt::blue));
    EXPECT_EQ(colourAt(Image::imageNamed("badge", main)), QColor(Qt::blue));
    EXPECT_EQ(colourAt(Image::imageNamed("badge@2x.png", main)), QColor(Qt::red));

    dir.writeFile("photo.jpg", encoded(Qt::white, "JPG"));
    EXPECT_FALSE(Image::imageNamed("photo").isNull());
    EXPECT_TRUE(Image::imageNamed("missing").isNull());
    EXPECT_TRUE(Image::imageNamed("badge", Bundle()).isNull());

    // The media-bundle lookup: the media folder and the given bundle are read first only on
    // systems newer than eight.
    QTemporaryDir given;
    writeTestFile(given.filePath("badge.png"), encoded(Qt::red));
    writeTestFile(given.filePath("onlyInGiven.png"), encoded(Qt::magenta));
    dir.writeFile("ZQTMedia.bundle", "a file, not a folder");
    EXPECT_TRUE(MYBundle::MYBundle().isNull());
    QFile::remove(dir.path() + "/ZQTMedia.bundle");
    dir.writeFile("ZQTMedia.bundle/badge.png", encoded(Qt::blue));
    EXPECT_EQ(MYBundle::MYBundle().bundlePath(), dir.path() + "/ZQTMedia.bundle");
    dir.writeFile("ZQTMedia.bundle/extra.png", encoded(Qt::yellow));
    dir.writeFile("plain.png", encoded(Qt::green));

    const QList<std::tuple<QString, QString, QColor>> lookups = {
        {"16.4", "badge", Qt::red},        {"16.4", "onlyInGiven", Qt::magenta}, {"8.1", "badge", Qt::red},
        {"8.0.1", "badge", Qt::blue},      {"8.0", "badge", Qt::blue},          {"7.1", "badge", Qt::blue},
        {"8.0", "onlyInGiven", QColor()},  // older systems ignore the given bundle
        {"16.4", "extra.png", Qt::yellow}, // then the media bundle's file by its full name
        {"16.4", "extra", QColor()},       // (that way takes the name as a file name)
        {"16.4", "plain", Qt::green},      // then the main bundle by bare name
        {"16.4", "nowhere", QColor()}};
    for (const auto &[version, name, colour] : lookups) {
        DeviceProfile profile = DeviceProfile::current();
        profile.systemVersion = version;
        DeviceProfile::setCurrent(profile);
        EXPECT_EQ(colourAt(MYBundle::imageWithBundle(Bundle::bundleWithPath(given.path()), name)), colour)
            << version.toStdString() << " " << name.toStdString();
    }
    DeviceProfile::resetToScreen();
}

// The view scales its picture once per size: what it shows follows a resize and a new picture.
TEST(ImageViews, FitThePictureAfterEachResizeAndPictureChange)
{
    QImage halves = TestData::filled(400, 200, Qt::red);
    QPainter(&halves).fillRect(200, 0, 200, 200, Qt::blue);
    ZQTPlatform::ImageView view;
    view.setImage(Image(halves));
    const auto shown = [&view](int x, int y) { return view.grab().toImage().pixelColor(x, y); };
    view.resize(100, 50);
    EXPECT_EQ(shown(10, 25), QColor(Qt::red));
    EXPECT_EQ(shown(90, 25), QColor(Qt::blue));
    view.resize(200, 100);
    EXPECT_EQ(shown(190, 50), QColor(Qt::blue));
    EXPECT_EQ(shown(10, 50), QColor(Qt::red));
    view.setImage(Image(TestData::filled(400, 200, Qt::green)));
    EXPECT_EQ(shown(190, 50), QColor(Qt::green));
}

// The view draws a picture from a copy that a worker scales smoothly to where it is drawn; until
// the event loop brings that copy, it draws the picture unsmoothed, at the same place, size and
// orientation. A resize brings a new copy; views that go away while their copies are being made
// leave the next view's copy to come as usual.
TEST(ImageViews, DrawTheWorkersSmoothCopyOnceTheEventLoopBringsItAndThePictureUnsmoothedUntilThen)
{
    // The bitmap's left half is one-pixel red and blue stripes, its right half green; shown
    // turned a quarter clockwise, the stripes are on top. Smoothed to half its size or less, a
    // stripe is purple; unsmoothed, red or blue.
    QImage bitmap = TestData::filled(400, 200, Qt::green);
    for (int x = 0; x < 200; ++x) {
        for (int y = 0; y < 200; ++y)
            bitmap.setPixelColor(x, y, x % 2 ? Qt::red : Qt::blue);
    }
    const Image turned(bitmap, 1.0, Image::Orientation::Right);
    ZQTPlatform::ImageView view;
    view.setImage(turned);
    view.resize(100, 240); // the picture at half its size, 20 points from the top
    view.show();
    const QColor background = view.palette().color(QPalette::Window);
    QImage shown = view.grab().toImage();
    const auto at = [&shown](int x, int y) { return shown.pixelColor(x, y); };
    const auto unsmoothed = [](const QColor &c) { return c == QColor(Qt::red) || c == QColor(Qt::blue); };
    const auto smoothed = [](const QColor &c) {
        return qAbs(c.red() - 128) < 16 && c.green() < 16 && qAbs(c.blue() - 128) < 16;
    };
    const auto stripesOnceSmoothed = [&](int x, int y) {
        return QTest::qWaitFor([&] {
            shown = view.grab().toImage();
            return smoothed(at(x, y));
        }, 3000);
    };

    EXPECT_TRUE(unsmoothed(at(50, 20))) << "drawn at once, before any event";
    EXPECT_TRUE(unsmoothed(at(50, 119)));
    EXPECT_EQ(at(50, 120), QColor(Qt::green));
    EXPECT_EQ(at(50, 219), QColor(Qt::green));
    EXPECT_EQ(at(50, 19), background);
    EXPECT_EQ(at(50, 220), background);
    ASSERT_TRUE(stripesOnceSmoothed(50, 20));
    EXPECT_TRUE(smoothed(at(50, 119)));
    EXPECT_EQ(at(50, 121), QColor(Qt::green));
    EXPECT_EQ(at(50, 219), QColor(Qt::green));
    EXPECT_EQ(at(50, 19), background);
    EXPECT_EQ(at(50, 220), background);

    view.resize(50, 240); // a quarter of its size, 70 points from the top
    shown = view.grab().toImage();
    EXPECT_TRUE(unsmoothed(at(25, 70))) << "the copy for the old size is not stretched";
    EXPECT_EQ(at(25, 69), background);
    EXPECT_EQ(at(25, 169), QColor(Qt::green));
    EXPECT_EQ(at(25, 170), background);
    ASSERT_TRUE(stripesOnceSmoothed(25, 70));
    EXPECT_TRUE(smoothed(at(25, 119)));
    EXPECT_EQ(at(25, 69), background);
    EXPECT_EQ(at(25, 170), background);

    for (int gone = 0; gone < 4; ++gone) {
        ZQTPlatform::ImageView doomed;
        doomed.setImage(Image(TestData::filled(1920, 1080, QColor::fromHsv(gone * 60, 255, 255))));
        doomed.resize(320, 180);
        doomed.show();
        doomed.grab();
    }
    ZQTPlatform::ImageView next;
    next.setImage(Image(bitmap));
    next.resize(200, 50);
    next.show();
    shown = next.grab().toImage();
    EXPECT_TRUE(unsmoothed(at(50, 25)));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        shown = next.grab().toImage();
        return smoothed(at(50, 25));
    }, 3000));
}
