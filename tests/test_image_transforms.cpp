// Image transforms: orientation baked into pixels, resizing and fitting, crops in points and in
// pixels, the redrawn crop and the square crop. Pictures are checked by sampling four quadrants
// of a test image whose quadrants have four different colours.
#include "lib/Categories/Image+CropCategory.h"
#include "lib/Categories/Image+ResizeCategory.h"
#include "lib/Categories/Image+fixOrientation.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/Exception.h"
#include "platform/ui/ImageContext.h"

#include <gtest/gtest.h>

#include <QPainter>

using ZQTPlatform::Image;
using Orientation = ZQTPlatform::Image::Orientation;

namespace {

// Top left red, top right green, bottom left blue, bottom right yellow.
QImage quadrants(int w, int h)
{
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.fillRect(0, 0, w / 2, h / 2, Qt::red);
    painter.fillRect(w / 2, 0, w - w / 2, h / 2, Qt::green);
    painter.fillRect(0, h / 2, w / 2, h - h / 2, Qt::blue);
    painter.fillRect(w / 2, h / 2, w - w / 2, h - h / 2, Qt::yellow);
    return image;
}

// Each pixel's red and green values are its x and y.
QImage coordinates(int w, int h)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, qRgb(x, y, 0));
    return image;
}

char letter(const QColor &c)
{
    if (c.alpha() < 16)
        return 'T';
    const int rgb = (c.red() > 200) * 4 + (c.green() > 200) * 2 + (c.blue() > 200);
    return "?BG?R?Y?"[rgb];
}

char at(const QImage &image, qreal x, qreal y)
{
    return letter(image.pixelColor(int(x), int(y)));
}

// The colours at the centres of the quadrants: top left, top right, bottom left, bottom right.
std::string corners(const QImage &image)
{
    const qreal w = image.width(), h = image.height();
    return {at(image, w / 4, h / 4), at(image, 3 * w / 4, h / 4), at(image, w / 4, 3 * h / 4),
            at(image, 3 * w / 4, 3 * h / 4)};
}

// The corners of the upright picture of quadrants(), and whether it is shown turned (sides swapped).
const struct { Orientation orientation; const char *corners; bool turned; } allOrientations[] = {
    {Orientation::Up, "RGBY", false},          {Orientation::Down, "YBGR", false},
    {Orientation::Left, "GYRB", true},         {Orientation::Right, "BRYG", true},
    {Orientation::UpMirrored, "GRYB", false},  {Orientation::DownMirrored, "BYRG", false},
    {Orientation::LeftMirrored, "RBGY", true}, {Orientation::RightMirrored, "YGBR", true},
};

} // namespace

TEST(ImageTransforms, EveryOrientationComesOutUpright)
{
    for (const auto &shown : allOrientations) {
        SCOPED_TRACE(int(shown.orientation));
        const Image image(quadrants(60, 40), 1.0, shown.orientation);
        const QSize upright = shown.turned ? QSize(40, 60) : QSize(60, 40);

        const Image fixed = fixOrientation::fixOrientation(image);
        EXPECT_EQ(fixed.bitmap().size(), upright);
        EXPECT_EQ(fixed.imageOrientation(), Orientation::Up);
        EXPECT_EQ(corners(fixed.bitmap()), shown.corners);

        ZQTPlatform::ImageContext context(QSizeF(upright), false, 1.0);
        context.drawImage(image, QRectF(QPointF(0, 0), QSizeF(upright)));
        EXPECT_EQ(corners(context.takeImage().bitmap()), shown.corners);

        // Square, so the mirrored quarter turns land in place too.
        const Image resized = ResizeCategory::resizedImageToSize(Image(quadrants(40, 40), 1.0, shown.orientation),
                                                                 QSizeF(20, 20));
        EXPECT_EQ(resized.bitmap().size(), QSize(20, 20));
        EXPECT_EQ(resized.imageOrientation(), Orientation::Up);
        EXPECT_EQ(corners(resized.bitmap()), shown.corners);
    }
}

TEST(ImageTransforms, UpOrSameSizeImagesComeBackAsTheyAreAndScaledOnesAreDrawnInPoints)
{
    const Image up(quadrants(60, 40), 2.0);
    EXPECT_EQ(fixOrientation::fixOrientation(up).bitmap().cacheKey(), up.bitmap().cacheKey());
    const Image right(quadrants(60, 40), 2.0, Orientation::Right);
    EXPECT_EQ(ResizeCategory::resizedImageToSize(right, QSizeF(60, 40)).bitmap().cacheKey(), right.bitmap().cacheKey());
    EXPECT_TRUE(ResizeCategory::resizedImageToSize(right, QSizeF(0, 0)).isNull());

    // Fixing draws points as pixels; resizing targets points of a context at the image's scale.
    const Image fixed = fixOrientation::fixOrientation(Image(quadrants(120, 80), 2.0, Orientation::Right));
    EXPECT_EQ(std::make_tuple(fixed.bitmap().size(), fixed.scale(), corners(fixed.bitmap())),
              std::make_tuple(QSize(40, 60), 1.0, std::string("BRYG")));
    const Image half = ResizeCategory::resizedImageToSize(Image(quadrants(200, 100), 2.0), QSizeF(100, 50));
    EXPECT_EQ(std::make_tuple(half.bitmap().size(), half.scale(), corners(half.bitmap())),
              std::make_tuple(QSize(200, 100), 2.0, std::string("RGBY")));

    try {
        ResizeCategory::resizedImageToSize(Image(quadrants(60, 40), 1.0, static_cast<Orientation>(8)), QSizeF(30, 20));
        FAIL() << "no exception";
    } catch (const ZQTPlatform::Exception &e) {
        EXPECT_EQ(e.name(), "NSInternalInconsistencyException");
        EXPECT_EQ(e.reason(), "Invalid image orientation");
    }
}

TEST(ImageTransforms, FitInSizeTargets)
{
    struct Case { QSize pixels; Orientation orientation; QSizeF bounds; bool scaleIfSmaller; QSize result; };
    const Case cases[] = {
        {{200, 100}, Orientation::Up, {100, 100}, false, {100, 50}},
        {{100, 200}, Orientation::Up, {100, 100}, false, {50, 100}},
        {{300, 200}, Orientation::Up, {100, 100}, false, {100, 66}},    // rounded down
        {{44, 22}, Orientation::Up, {30, 100}, false, {30, 15}},        // 14.999999999999998 as a float is 15
        {{100, 50}, Orientation::Up, {1000, 1000}, true, {1000, 500}},
        {{100, 50}, Orientation::Up, {1000, 40}, false, {80, 40}},      // larger on one side only: shrinks
        {{400, 300}, Orientation::Right, {100, 1000}, false, {100, 133}}, // box taken as shown
        {{400, 300}, Orientation::Right, {100, 100}, false, {75, 100}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.pixels.width() << "x" << c.pixels.height() << " in "
                                        << c.bounds.width() << "x" << c.bounds.height());
        const Image image(quadrants(c.pixels.width(), c.pixels.height()), 1.0, c.orientation);
        const Image fitted = ResizeCategory::resizedImageToFitInSize(image, c.bounds, c.scaleIfSmaller);
        EXPECT_EQ(fitted.bitmap().size(), c.result);
        EXPECT_EQ(fitted.imageOrientation(), Orientation::Up);
    }

    const Image right(quadrants(400, 300), 1.0, Orientation::Right);
    EXPECT_EQ(corners(ResizeCategory::resizedImageToFitInSize(right, QSizeF(100, 100), false).bitmap()), "BRYG");

    const Image small(quadrants(100, 50));
    EXPECT_EQ(ResizeCategory::resizedImageToFitInSize(small, QSizeF(1000, 1000), false).bitmap().cacheKey(),
              small.bitmap().cacheKey());
}

TEST(ImageTransforms, ResizeMovesNonSquareMirroredQuarterTurnsUp)
{
    // 60x40 at half size: the 20x30 picture sits (40 - 60) x 0.5 = -10 points up, so its top
    // third is lost and the bottom third of the bitmap stays transparent.
    const struct { Orientation orientation; const char *column; } cases[] = {
        {Orientation::LeftMirrored, "RGT"},  // the picture's left column is red over green
        {Orientation::RightMirrored, "YBT"}, // yellow over blue
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(int(c.orientation));
        const QImage bitmap =
            ResizeCategory::resizedImageToSize(Image(quadrants(60, 40), 1.0, c.orientation), QSizeF(30, 20)).bitmap();
        ASSERT_EQ(bitmap.size(), QSize(20, 30));
        EXPECT_EQ(std::string({at(bitmap, 5, 2), at(bitmap, 5, 8), at(bitmap, 5, 25)}), c.column);
    }
}

TEST(ImageTransforms, CropsInPointsAndInPixels)
{
    const Image image(coordinates(100, 80), 2.0, Orientation::Right);
    const Image other(quadrants(100, 80));
    const QRectF rect(10, 5, 20, 10);

    // Points: times the scale, in the bitmap's own frame; scale and orientation kept.
    for (const Image &cut : {CropCategory::crop(image, rect), CropCategory::cropImage(other, image, rect)}) {
        EXPECT_EQ(cut.bitmap().size(), QSize(40, 20));
        EXPECT_EQ(cut.bitmap().pixel(0, 0), qRgb(20, 10, 0));
        EXPECT_EQ(cut.scale(), 2.0);
        EXPECT_EQ(cut.imageOrientation(), Orientation::Right);
    }
    // Pixels: taken as they are; crop:inRect: cuts its receiver, never its image argument.
    for (const Image &cut : {CropCategory::crop(image, other, rect), CropCategory::croppIngimageByImageName(other, image, rect)}) {
        EXPECT_EQ(cut.bitmap().size(), QSize(20, 10));
        EXPECT_EQ(cut.bitmap().pixel(0, 0), qRgb(10, 5, 0));
        EXPECT_EQ(cut.scale(), 1.0);
        EXPECT_EQ(cut.imageOrientation(), Orientation::Up);
    }
    // Rounded outwards to whole pixels and clipped to the bitmap.
    EXPECT_EQ(CropCategory::crop(image, other, QRectF(0.5, 0.5, 1, 1)).bitmap().size(), QSize(2, 2));
    EXPECT_EQ(CropCategory::crop(image, other, QRectF(90, 70, 50, 50)).bitmap().size(), QSize(10, 10));
    EXPECT_TRUE(CropCategory::crop(image, other, QRectF(200, 0, 10, 10)).isNull());
}

TEST(ImageTransforms, RedrawnCropWorksOnThePictureAsShown)
{
    const Image image(quadrants(60, 40), 1.0, Orientation::Right); // shown 40x60: blue, red / yellow, green
    EXPECT_EQ(CropCategory::imageWithImage(Image(), image, QRectF(0, 0, 40, 60)).bitmap().cacheKey(),
              image.bitmap().cacheKey());

    const QImage cut = CropCategory::imageWithImage(Image(), image, QRectF(30, 0, 20, 30)).bitmap();
    EXPECT_EQ(cut.size(), QSize(20, 30));
    EXPECT_EQ(at(cut, 5, 15), 'R');
    EXPECT_EQ(at(cut, 15, 15), 'T'); // beyond the picture
}

TEST(ImageTransforms, SquareIsOpaqueAtScreenScaleAndSqueezed)
{
    auto profile = ZQTPlatform::DeviceProfile::current();
    profile.screenScale = 2.0;
    ZQTPlatform::DeviceProfile::setCurrent(profile);

    // Stripes red, green, blue of 50, 100 and 50 along the long side. At width 50 the source is
    // drawn 75 long from -12.5: the stripes end at 6.25 and 43.75.
    for (const bool landscape : {true, false}) {
        SCOPED_TRACE(landscape);
        QImage stripes(200, 100, QImage::Format_RGB32);
        QPainter painter(&stripes);
        painter.fillRect(0, 0, 50, 100, Qt::red);
        painter.fillRect(50, 0, 100, 100, Qt::green);
        painter.fillRect(150, 0, 50, 100, Qt::blue);
        painter.end();
        const Image image(stripes, 1.0, landscape ? Orientation::Up : Orientation::LeftMirrored);

        const Image square = CropCategory::squareImageWithImage(Image(), image, QSizeF(50, 999));
        EXPECT_EQ(square.size(), QSizeF(50, 50));
        EXPECT_EQ(square.scale(), 2.0);
        EXPECT_FALSE(square.bitmap().hasAlphaChannel());
        std::string along;
        for (const qreal p : {4.0, 8.0, 42.0, 46.0})
            along += landscape ? at(square.bitmap(), 2 * p, 50) : at(square.bitmap(), 50, 2 * p);
        EXPECT_EQ(along, "RGGB");
    }
}
