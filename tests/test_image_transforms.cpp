// Image transforms: orientation baked into pixels (fixed or drawn), and crops in points. Pictures
// are checked by sampling four quadrants of a test image whose quadrants have four different
// colours. (Resizing, fitting, the redrawn and the square crop: no caller in the component.)
#include "lib/Categories/Image+CropCategory.h"
#include "lib/Categories/Image+fixOrientation.h"
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

// The colours at the centres of the quadrants: top left, top right, bottom left, bottom right.
std::string corners(const QImage &image)
{
    std::string letters;
    for (const auto &[x, y] : {std::pair(1, 1), std::pair(3, 1), std::pair(1, 3), std::pair(3, 3)})
        letters += letter(image.pixelColor(x * image.width() / 4, y * image.height() / 4));
    return letters;
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
    }
    // Up comes back as it is; the others are drawn with their points as pixels.
    const Image up(quadrants(60, 40), 2.0);
    EXPECT_EQ(fixOrientation::fixOrientation(up).bitmap().cacheKey(), up.bitmap().cacheKey());
    const Image fixed = fixOrientation::fixOrientation(Image(quadrants(120, 80), 2.0, Orientation::Right));
    EXPECT_EQ(std::make_tuple(fixed.bitmap().size(), fixed.scale()), std::make_tuple(QSize(40, 60), 1.0));
}

// The still camera's cut of the seen part: in points, times the scale, in the bitmap's own frame,
// rounded outwards to whole pixels and clipped to the bitmap; scale and orientation kept. (The
// pixel forms and cropImage have no caller in the component.)
TEST(ImageTransforms, CropsInPointsRoundOutwardsAndClip)
{
    const Image image(coordinates(100, 80), 2.0, Orientation::Right);
    const Image cut = CropCategory::crop(image, QRectF(10, 5, 20, 10));
    EXPECT_EQ(cut.bitmap().size(), QSize(40, 20));
    EXPECT_EQ(cut.bitmap().pixel(0, 0), qRgb(20, 10, 0));
    EXPECT_EQ(cut.scale(), 2.0);
    EXPECT_EQ(cut.imageOrientation(), Orientation::Right);
    EXPECT_EQ(CropCategory::crop(image, QRectF(0.25, 0.25, 0.5, 0.5)).bitmap().size(), QSize(2, 2));
    EXPECT_EQ(CropCategory::crop(image, QRectF(45, 35, 25, 25)).bitmap().size(), QSize(10, 10));
    EXPECT_TRUE(CropCategory::crop(image, QRectF(100, 0, 5, 5)).isNull());
}
