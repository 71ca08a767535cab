// The picture work before the engine reads: strokes told from everything else by grey-scale
// morphology (OpenCV's, as in the barcode reader's region pass), the slant of the lines found
// from the strokes.
#include "platform/capture/VINTextPicture_p.h"

#include "platform/capture/FrameLayout_p.h"

#include <QtMath>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace ZQTPlatform {

namespace {

// A pixel of a stroke is darker (or lighter) than the paper beside it by this many grey levels
// (well above sensor noise).
constexpr int standsOut = 40;
// Strokes up to twice this wide are told from the paper: the thick strokes of stamped characters
// 40 pixels high, with room to spare.
constexpr int strokeRadius = 7;
// A straight run of ink longer than twice this is a ruled line, not a character.
constexpr int ruleRadius = 30;
// Labels are held at most this far off level (degrees); beyond, the person turns the phone.
constexpr double maxSkewDegrees = 12;

// The picture's pixels as an 8-bit matrix, without a copy.
cv::Mat pixelsOf(const QImage &grey)
{
    return cv::Mat(grey.height(), grey.width(), CV_8UC1, const_cast<uchar *>(grey.constBits()), size_t(grey.bytesPerLine()));
}

// A grey picture of the matrix (a copy).
QImage pictureOf(const cv::Mat &pixels)
{
    QImage picture(pixels.cols, pixels.rows, QImage::Format_Grayscale8);
    pixels.copyTo(cv::Mat(picture.height(), picture.width(), CV_8UC1, picture.bits(), size_t(picture.bytesPerLine())));
    return picture;
}

// A copy of the matrix scaled to size (at least one pixel each way), each pixel the mean of those
// it covers.
cv::Mat shrunk(const cv::Mat &pixels, const cv::Size &size)
{
    cv::Mat out;
    cv::resize(pixels, out, cv::Size(std::max(1, size.width), std::max(1, size.height)), 0, 0, cv::INTER_AREA);
    return out;
}

// A dilation, erosion, opening or closing of a grey picture (cv::MORPH_DILATE and so on) over
// windows of width x height pixels; windows end at the picture's edges.
cv::Mat morphology(const cv::Mat &grey, int operation, int width, int height)
{
    cv::Mat out;
    cv::morphologyEx(grey, out, operation, cv::getStructuringElement(cv::MORPH_RECT, cv::Size(width, height)));
    return out;
}

// The depth of the ruled lines among the strokes: what stays of them after an opening along rows
// (and along columns) longer than any character, the borders of form fields and of boxes.
cv::Mat ruledLines(const cv::Mat &depth)
{
    constexpr int length = 2 * ruleRadius + 1;
    return cv::max(morphology(depth, cv::MORPH_OPEN, length, 1), morphology(depth, cv::MORPH_OPEN, 1, length));
}

} // namespace

QImage smoothGrey(const QImage &picture, double scale)
{
    const QImage luminance = greyOfPicture(picture);
    cv::Mat grey = pixelsOf(luminance);
    if (scale < 1.0)
        grey = shrunk(grey, cv::Size(qRound(grey.cols * scale), qRound(grey.rows * scale)));
    // Half the size and back again.
    cv::Mat smooth;
    cv::resize(shrunk(grey, cv::Size(grey.cols / 2, grey.rows / 2)), smooth, grey.size(), 0, 0, cv::INTER_LINEAR);
    return pictureOf(smooth);
}

QImage turned(const QImage &evened, const QTransform &turn)
{
    // The transform works on pixel corners, OpenCV on pixel centres, half a pixel inside.
    const QPointF centre = turn.map(QPointF(0.5, 0.5)) - QPointF(0.5, 0.5);
    const cv::Matx23d toLevel(turn.m11(), turn.m21(), centre.x(), turn.m12(), turn.m22(), centre.y());
    cv::Mat level;
    cv::warpAffine(pixelsOf(evened), level, toLevel, cv::Size(evened.width(), evened.height()), cv::INTER_LINEAR,
                   cv::BORDER_CONSTANT, cv::Scalar(255));
    return pictureOf(level);
}

QImage strokeDepth(const QImage &grey)
{
    // A closing (dilation, then erosion) fills every dark feature narrower than the square and
    // keeps wider shapes as they are: paper, plates, glare, shadows, the edges of a sticker. An
    // opening does the same for light features.
    constexpr int side = 2 * strokeRadius + 1;
    const cv::Mat in = pixelsOf(grey);
    const cv::Mat dilated = morphology(in, cv::MORPH_DILATE, side, side);
    const cv::Mat eroded = morphology(in, cv::MORPH_ERODE, side, side);
    const cv::Mat closed = morphology(dilated, cv::MORPH_ERODE, side, side);
    const cv::Mat opened = morphology(eroded, cv::MORPH_DILATE, side, side);
    // Which are the strokes: near print (where the lightest and darkest pixels of the square
    // differ widely) the ground covers more of the picture than the strokes do, so the fewer
    // pixels are the strokes. The square's own extremes, not the closing and opening: those
    // differ only where ground is narrow too (inside and between characters), where strokes and
    // ground are about even, and the count then picks the wrong side as often as the right one.
    qint64 darker = 0, lighter = 0;
    for (int y = 0; y < in.rows; ++y) {
        const uchar *pixel = in.ptr<uchar>(y);
        const uchar *high = dilated.ptr<uchar>(y);
        const uchar *low = eroded.ptr<uchar>(y);
        for (int x = 0; x < in.cols; ++x) {
            if (high[x] - low[x] < 2 * standsOut)
                continue;
            const int middle = (high[x] + low[x]) / 2;
            darker += pixel[x] < middle;
            lighter += pixel[x] > middle;
        }
    }
    // The opening lies at or below the picture, the closing at or above it.
    return pictureOf(lighter < darker ? cv::Mat(in - opened) : cv::Mat(closed - in));
}

double skewOf(const QImage &evened)
{
    // The dark pixels of a copy a quarter the size: enough to see lines, cheap to shear.
    const cv::Mat small = shrunk(pixelsOf(evened), cv::Size(evened.width() / 4, evened.height() / 4));
    std::vector<QPoint> ink;
    for (int y = 0; y < small.rows; ++y) {
        const uchar *row = small.ptr<uchar>(y);
        for (int x = 0; x < small.cols; ++x) {
            if (row[x] < 128)
                ink.emplace_back(x, y);
        }
    }
    if (ink.empty())
        return 0;
    // Each slant shears the ink into rows; the slant of the lines puts most ink into fewest rows
    // (the largest sum of squared row counts).
    const auto sharpness = [&](double slant) {
        const double step = std::tan(slant);
        const int margin = int(std::ceil(std::abs(step) * small.cols)) + 1;
        std::vector<int> rows(size_t(small.rows + 2 * margin), 0);
        for (const QPoint &p : ink)
            ++rows[size_t(margin + int(std::lround(p.y() - p.x() * step)))];
        double sum = 0;
        for (const int count : rows)
            sum += double(count) * count;
        return sum;
    };
    double best = 0, bestSharpness = sharpness(0);
    for (double degrees = -maxSkewDegrees; degrees <= maxSkewDegrees; degrees += 0.5) {
        const double slant = qDegreesToRadians(degrees);
        const double value = sharpness(slant);
        if (value > bestSharpness) {
            best = slant;
            bestSharpness = value;
        }
    }
    return best;
}

QImage withoutRuledLines(const QImage &level)
{
    const cv::Mat ink = 255 - pixelsOf(level);
    // Saturating: ink that is all rule becomes paper.
    return pictureOf(255 - (ink - ruledLines(ink)));
}

QImage evenedForReading(const QImage &depth)
{
    std::array<qint64, 256> histogram{};
    for (int y = 0; y < depth.height(); ++y) {
        const uchar *row = depth.constScanLine(y);
        for (int x = 0; x < depth.width(); ++x)
            ++histogram[row[x]];
    }
    // The depth of the strokes: the deepest pixels but a few (a character covers a fair share of
    // its line, a speck of dirt does not).
    const qint64 total = qint64(depth.width()) * depth.height();
    qint64 seen = 0;
    int strokes = 255;
    while (strokes > 0 && (seen += histogram[strokes]) < total / 200)
        --strokes;
    const int scale = std::max(strokes, standsOut);
    // Shallower than a fifth of the strokes is paper: sensor noise and JPEG blocks. Stretched
    // with the strokes, they would grain the paper so that the engine's layout takes the whole
    // picture for one block and finds no line in it.
    const int paper = scale / 5;
    QImage evened(depth.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < depth.height(); ++y) {
        const uchar *in = depth.constScanLine(y);
        uchar *out = evened.scanLine(y);
        for (int x = 0; x < depth.width(); ++x)
            out[x] = uchar(255 - std::clamp((in[x] - paper) * 255 / (scale - paper), 0, 255));
    }
    return evened;
}

} // namespace ZQTPlatform
