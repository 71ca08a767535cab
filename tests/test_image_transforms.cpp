// Image transforms: orientation baked into pixels, resizing and fitting, crops in points and in
// pixels, the redrawn crop and the square crop. Pictures are checked by sampling four quadrants
// of a test image whose quadrants have four different colours.
#include "lib/Categories/Image+CropCategory.h"
#include "lib/Categories/Image+ResizeCategory.h"
#include "lib/Categories/Image+fixOrientation.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/ImageContext.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <functional>

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
    // Up comes back as it is; the others are drawn with their points as pixels.
    const Image up(quadrants(60, 40), 2.0);
    EXPECT_EQ(fixOrientation::fixOrientation(up).bitmap().cacheKey(), up.bitmap().cacheKey());
    const Image fixed = fixOrientation::fixOrientation(Image(quadrants(120, 80), 2.0, Orientation::Right));
    EXPECT_EQ(std::make_tuple(fixed.bitmap().size(), fixed.scale()), std::make_tuple(QSize(40, 60), 1.0));
}

// Resizing to a size and fitting into a box (helpers the component itself does not call): the
// bitmap that comes out, its scale and the picture's quadrants ("same": the input itself, when
// there is nothing to do).
TEST(ImageTransforms, ResizeAndFitTable)
{
    using Op = std::function<Image(const Image &)>;
    const auto resize = [](QSizeF size) -> Op { return [=](const Image &i) { return ResizeCategory::resizedImageToSize(i, size); }; };
    const auto fit = [](QSizeF box, bool scaleIfSmaller = false) -> Op {
        return [=](const Image &i) { return ResizeCategory::resizedImageToFitInSize(i, box, scaleIfSmaller); };
    };
    struct Row { const char *what; Image image; Op op; QSize pixels; qreal scale; std::string corners; };
    const Row rows[] = {
        {"resize to its own size", Image(quadrants(60, 40), 2.0, Orientation::Right), resize({60, 40}), {}, 0, "same"},
        // Points of a context at the image's scale.
        {"resize at scale 2", Image(quadrants(200, 100), 2.0), resize({100, 50}), {200, 100}, 2.0, "RGBY"},
        // 60x40 at half size: the 20x30 picture sits (40 - 60) x 0.5 = -10 points up, so its top
        // third is lost and the bottom third of the bitmap stays transparent.
        {"non-square mirrored quarter turn", Image(quadrants(60, 40), 1.0, Orientation::LeftMirrored), resize({30, 20}),
         {20, 30}, 1.0, "GYTT"},
        {"fit wide", Image(quadrants(200, 100)), fit({100, 100}), {100, 50}, 1.0, "RGBY"},
        {"fit a smaller image", Image(quadrants(100, 50)), fit({1000, 1000}), {}, 0, "same"},
        {"fit a smaller image, scaling up", Image(quadrants(100, 50)), fit({1000, 1000}, true), {1000, 500}, 1.0, "RGBY"},
        {"fit as shown", Image(quadrants(400, 300), 1.0, Orientation::Right), fit({100, 1000}), {100, 133}, 1.0, "BRYG"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        const Image out = row.op(row.image);
        if (row.corners == "same") {
            EXPECT_EQ(out.bitmap().cacheKey(), row.image.bitmap().cacheKey());
        } else {
            EXPECT_EQ(std::make_tuple(out.bitmap().size(), out.scale(), corners(out.bitmap()), out.imageOrientation()),
                      std::make_tuple(row.pixels, row.scale, row.corners, Orientation::Up));
        }
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
