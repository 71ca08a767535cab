// Images: EXIF orientation kept as the image's orientation, scale from "@2x"/"@3x" names,
// vector images at their natural size, lookup by name in a bundle, and the media-bundle
// lookup of imageWithBundle with its branch on the system version.
#include "lib/Categories/Bundle+MYBundle.h"
#include "platform/Bundle.h"
#include "platform/DeviceProfile.h"
#include "platform/Image.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QtEndian>

using ZQTPlatform::Bundle;
using ZQTPlatform::DeviceProfile;
using ZQTPlatform::Image;

namespace {

QByteArray encoded(const QSize &size, const QColor &color, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A JPEG with an APP1 "Exif" segment whose only tag is the orientation (0x0112).
QByteArray jpegWithExifOrientation(const QSize &size, quint16 orientation)
{
    QByteArray tiff("MM\x00\x2a\x00\x00\x00\x08", 8);         // big-endian TIFF, IFD0 at offset 8
    tiff += QByteArray("\x00\x01", 2);                       // one entry
    tiff += QByteArray("\x01\x12\x00\x03\x00\x00\x00\x01", 8); // orientation, SHORT, count 1
    tiff += char(orientation >> 8);
    tiff += char(orientation & 0xFF);
    tiff += QByteArray("\x00\x00", 2);                       // value padding
    tiff += QByteArray("\x00\x00\x00\x00", 4);               // no next IFD
    const QByteArray payload = QByteArray("Exif\x00\x00", 6) + tiff;
    QByteArray segment("\xFF\xE1", 2);
    const quint16 length = quint16(payload.size() + 2);
    segment += char(length >> 8);
    segment += char(length & 0xFF);
    segment += payload;

    QByteArray jpeg = encoded(size, Qt::red, "JPG");
    // Insert after the start-of-image marker and the JFIF APP0 segment.
    qsizetype at = 2;
    if (quint8(jpeg[2]) == 0xFF && quint8(jpeg[3]) == 0xE0)
        at += 2 + qFromBigEndian<quint16>(jpeg.constData() + 4);
    jpeg.insert(at, segment);
    return jpeg;
}

QColor colourAt(const Image &image)
{
    return image.isNull() ? QColor() : image.bitmap().pixelColor(0, 0);
}

} // namespace

// --- decoding -------------------------------------------------------------------------------

TEST(ImageDecoding, ExifOrientationBecomesTheImageOrientationWithoutRotatingPixels)
{
    const QList<std::pair<quint16, Image::Orientation>> cases = {
        {1, Image::Orientation::Up},           {2, Image::Orientation::UpMirrored},
        {3, Image::Orientation::Down},         {4, Image::Orientation::DownMirrored},
        {5, Image::Orientation::LeftMirrored}, {6, Image::Orientation::Right},
        {7, Image::Orientation::RightMirrored}, {8, Image::Orientation::Left}};
    for (const auto &[exif, expected] : cases) {
        const Image image = Image::fromData(jpegWithExifOrientation(QSize(40, 20), exif));
        ASSERT_FALSE(image.isNull()) << exif;
        EXPECT_EQ(image.imageOrientation(), expected) << exif;
        EXPECT_EQ(image.bitmap().size(), QSize(40, 20)) << exif;
    }
}

TEST(ImageDecoding, SizeInPointsFollowsScaleAndSidewaysOrientations)
{
    const Image sideways = Image::fromData(jpegWithExifOrientation(QSize(40, 20), 6), 2.0);
    EXPECT_EQ(sideways.size(), QSizeF(10, 20));
    const Image upright(QImage(30, 12, QImage::Format_ARGB32), 3.0);
    EXPECT_EQ(upright.size(), QSizeF(10, 4));
    EXPECT_EQ(Image().size(), QSizeF(0, 0));
}

TEST(ImageDecoding, DataThatIsNoImageGivesTheNullImage)
{
    EXPECT_TRUE(Image::fromData("not an image").isNull());
    EXPECT_TRUE(Image::fromData(QByteArray()).isNull());
    EXPECT_TRUE(Image::imageWithContentsOfFile("/no/such/file.png").isNull());
}

TEST(ImageFiles, ScaleComesFromTheFileName)
{
    QTemporaryDir dir;
    const QByteArray png = encoded(QSize(40, 20), Qt::blue, "PNG");
    for (const char *name : {"icon.png", "icon@2x.png", "icon@3x.png"}) {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(png);
    }
    EXPECT_EQ(Image::imageWithContentsOfFile(dir.filePath("icon.png")).scale(), 1.0);
    const Image twice = Image::imageWithContentsOfFile(dir.filePath("icon@2x.png"));
    EXPECT_EQ(twice.scale(), 2.0);
    EXPECT_EQ(twice.size(), QSizeF(20, 10));
    EXPECT_EQ(Image::imageWithContentsOfFile(dir.filePath("icon@3x.png")).scale(), 3.0);
}

TEST(ImageFiles, VectorImagesRenderAtTheirNaturalSizeTimesTheScale)
{
    QTemporaryDir dir;
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"10\">"
                           "<rect width=\"30\" height=\"10\" fill=\"#00ff00\"/></svg>";
    for (const char *name : {"logo.svg", "logo@3x.svg"}) {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(svg);
    }
    const Image plain = Image::imageWithContentsOfFile(dir.filePath("logo.svg"));
    EXPECT_EQ(plain.bitmap().size(), QSize(30, 10));
    const Image sharp = Image::imageWithContentsOfFile(dir.filePath("logo@3x.svg"));
    EXPECT_EQ(sharp.bitmap().size(), QSize(90, 30));
    EXPECT_EQ(sharp.size(), QSizeF(30, 10));
    EXPECT_EQ(colourAt(sharp), QColor(0, 255, 0));
}

TEST(ImageFiles, NamesWithoutExtensionTryPngThenScaledThenJpegThenSvg)
{
    TemporaryMainBundle bundle;
    bundle.writeFile("badge@2x.png", encoded(QSize(8, 8), Qt::red, "PNG"));
    const Bundle main = Bundle::mainBundle();
    EXPECT_EQ(Image::imageNamed("badge", main).scale(), 2.0);

    bundle.writeFile("badge.png", encoded(QSize(4, 4), Qt::blue, "PNG"));
    EXPECT_EQ(colourAt(Image::imageNamed("badge", main)), QColor(Qt::blue));
    EXPECT_EQ(colourAt(Image::imageNamed("badge@2x.png", main)), QColor(Qt::red));

    bundle.writeFile("photo.jpg", encoded(QSize(4, 4), Qt::white, "JPG"));
    EXPECT_FALSE(Image::imageNamed("photo").isNull());
    EXPECT_TRUE(Image::imageNamed("missing").isNull());
    EXPECT_TRUE(Image::imageNamed("badge", Bundle()).isNull());
}

// --- media bundle -------------------------------------------------------------------------------

class MediaBundleImages : public ::testing::Test
{
protected:
    void SetUp() override
    {
        host.writeFile("ZQTMedia.bundle/badge.png", encoded(QSize(4, 4), Qt::blue, "PNG"));
        host.writeFile("ZQTMedia.bundle/extra.png", encoded(QSize(4, 4), Qt::yellow, "PNG"));
        host.writeFile("plain.png", encoded(QSize(4, 4), Qt::green, "PNG"));
        writeTo(given, "badge.png", Qt::red);
        writeTo(given, "onlyInGiven.png", Qt::magenta);
    }
    void TearDown() override { DeviceProfile::resetToScreen(); }

    static void writeTo(const QTemporaryDir &dir, const QString &name, const QColor &colour)
    {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(encoded(QSize(4, 4), colour, "PNG"));
    }
    static void setSystemVersion(const QString &version)
    {
        DeviceProfile profile = DeviceProfile::current();
        profile.systemVersion = version;
        DeviceProfile::setCurrent(profile);
    }
    QColor lookUp(const QString &name) const
    {
        return colourAt(MYBundle::imageWithBundle(Bundle::bundleWithPath(given.path()), name));
    }

    TemporaryMainBundle host;
    QTemporaryDir given;
};

TEST_F(MediaBundleImages, TheMediaBundleIsAFolderOfTheMainBundle)
{
    EXPECT_EQ(MYBundle::MYBundle().bundlePath(), host.path() + "/ZQTMedia.bundle");
    TemporaryMainBundle empty;
    EXPECT_TRUE(MYBundle::MYBundle().isNull());
    empty.writeFile("ZQTMedia.bundle", "a file, not a folder");
    EXPECT_TRUE(MYBundle::MYBundle().isNull());
}

TEST_F(MediaBundleImages, NewerSystemsLookInTheGivenBundleFirst)
{
    setSystemVersion("16.4");
    EXPECT_EQ(lookUp("badge"), QColor(Qt::red));
    EXPECT_EQ(lookUp("onlyInGiven"), QColor(Qt::magenta));
    setSystemVersion("8.0.1"); // reads as 8.0: not newer than 8.0
    EXPECT_EQ(lookUp("badge"), QColor(Qt::blue));
    setSystemVersion("8.1");
    EXPECT_EQ(lookUp("badge"), QColor(Qt::red));
}

TEST_F(MediaBundleImages, SystemsUpToEightReadTheMediaBundleAndIgnoreTheGivenOne)
{
    for (const QString version : {"8.0", "7.1"}) {
        setSystemVersion(version);
        EXPECT_EQ(lookUp("badge"), QColor(Qt::blue)) << version.toStdString();
        EXPECT_FALSE(lookUp("onlyInGiven").isValid()) << version.toStdString();
    }
}

TEST_F(MediaBundleImages, FallsBackToTheMediaFolderFileThenTheMainBundle)
{
    setSystemVersion("16.4");
    EXPECT_EQ(lookUp("extra.png"), QColor(Qt::yellow)); // the media bundle's file by its full name
    EXPECT_FALSE(lookUp("extra").isValid());              // that way takes the name as a file name
    EXPECT_EQ(lookUp("plain"), QColor(Qt::green));        // the main bundle by bare name
    EXPECT_FALSE(lookUp("nowhere").isValid());
}
