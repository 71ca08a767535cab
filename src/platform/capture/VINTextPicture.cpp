// The picture work before the engine reads: strokes told from everything else by grey-scale
// morphology, the slant of the lines found from the strokes.
#include "platform/capture/VINTextPicture_p.h"

#include <QtMath>

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

// The largest (or smallest) value in each window of 2 * radius + 1 along a line of count values
// spaced stride apart, in three comparisons per value whatever the radius (van Herk / Gil-Werman:
// running extremes from the start and from the end of each block of the window's length).
void lineExtremum(const uchar *in, uchar *out, int count, int stride, int radius, bool takeMax,
                  std::vector<uchar> &forward, std::vector<uchar> &backward)
{
    const int window = 2 * radius + 1;
    const auto better = [takeMax](uchar a, uchar b) { return takeMax ? std::max(a, b) : std::min(a, b); };
    forward.resize(count);
    backward.resize(count);
    for (int i = 0; i < count; ++i) {
        const uchar v = in[qsizetype(i) * stride];
        forward[i] = i % window == 0 ? v : better(forward[i - 1], v);
    }
    for (int i = count - 1; i >= 0; --i) {
        const uchar v = in[qsizetype(i) * stride];
        backward[i] = (i % window == window - 1 || i == count - 1) ? v : better(backward[i + 1], v);
    }
    for (int i = 0; i < count; ++i) {
        const int low = std::max(0, i - radius);
        const int high = std::min(count - 1, i + radius);
        out[qsizetype(i) * stride] = better(backward[low], forward[high]);
    }
}

// The picture's largest (dilation) or smallest (erosion) value in each window of 2 * radius + 1
// pixels, along rows, along columns or (both) in squares.
enum class Along { Rows, Columns, Both };

QImage extremum(const QImage &grey, int radius, bool takeMax, Along along = Along::Both)
{
    QImage out = grey.copy();
    std::vector<uchar> forward, backward;
    const QImage in = grey;
    if (along != Along::Columns) {
        for (int y = 0; y < grey.height(); ++y)
            lineExtremum(in.constScanLine(y), out.scanLine(y), grey.width(), 1, radius, takeMax, forward, backward);
    }
    if (along != Along::Rows) {
        const QImage rows = out.copy();
        const int stride = int(rows.bytesPerLine());
        for (int x = 0; x < grey.width(); ++x)
            lineExtremum(rows.constBits() + x, out.bits() + x, grey.height(), stride, radius, takeMax, forward, backward);
    }
    return out;
}

// The depth of the ruled lines among the strokes: what stays of them after an opening along rows
// (and along columns) longer than any character, the borders of form fields and of boxes.
QImage ruledLines(const QImage &depth)
{
    const QImage across = extremum(extremum(depth, ruleRadius, false, Along::Rows), ruleRadius, true, Along::Rows);
    const QImage down = extremum(extremum(depth, ruleRadius, false, Along::Columns), ruleRadius, true, Along::Columns);
    QImage rules(depth.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < depth.height(); ++y) {
        const uchar *a = across.constScanLine(y);
        const uchar *b = down.constScanLine(y);
        uchar *out = rules.scanLine(y);
        for (int x = 0; x < depth.width(); ++x)
            out[x] = std::max(a[x], b[x]);
    }
    return rules;
}

} // namespace

QImage strokeDepth(const QImage &grey)
{
    // A closing (dilation, then erosion) fills every dark feature narrower than the square and
    // keeps wider shapes as they are: paper, plates, glare, shadows, the edges of a sticker. An
    // opening does the same for light features.
    const QImage dilated = extremum(grey, strokeRadius, true);
    const QImage eroded = extremum(grey, strokeRadius, false);
    const QImage closed = extremum(dilated, strokeRadius, false);
    const QImage opened = extremum(eroded, strokeRadius, true);
    // Which are the strokes: near print (where the lightest and darkest pixels of the square
    // differ widely) the ground covers more of the picture than the strokes do, so the fewer
    // pixels are the strokes. The square's own extremes, not the closing and opening: those
    // differ only where ground is narrow too (inside and between characters), where strokes and
    // ground are about even, and the count then picks the wrong side as often as the right one.
    qint64 darker = 0, lighter = 0;
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *in = grey.constScanLine(y);
        const uchar *high = dilated.constScanLine(y);
        const uchar *low = eroded.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x) {
            if (high[x] - low[x] < 2 * standsOut)
                continue;
            const int middle = (high[x] + low[x]) / 2;
            darker += in[x] < middle;
            lighter += in[x] > middle;
        }
    }
    const bool lightStrokes = lighter < darker;
    QImage depth(grey.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *in = grey.constScanLine(y);
        const uchar *around = lightStrokes ? opened.constScanLine(y) : closed.constScanLine(y);
        uchar *out = depth.scanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            out[x] = uchar(lightStrokes ? in[x] - around[x] : around[x] - in[x]);
    }
    return depth;
}

double skewOf(const QImage &evened)
{
    // The dark pixels of a copy a quarter the size: enough to see lines, cheap to shear.
    const QImage small = evened.scaled(evened.size() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    std::vector<QPoint> ink;
    for (int y = 0; y < small.height(); ++y) {
        const uchar *row = small.constScanLine(y);
        for (int x = 0; x < small.width(); ++x) {
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
        const int margin = int(std::ceil(std::abs(step) * small.width())) + 1;
        std::vector<int> rows(size_t(small.height() + 2 * margin), 0);
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
    QImage ink = level.convertToFormat(QImage::Format_Grayscale8);
    ink.invertPixels();
    const QImage rules = ruledLines(ink);
    QImage out(level.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < out.height(); ++y) {
        const uchar *in = ink.constScanLine(y);
        const uchar *rule = rules.constScanLine(y);
        uchar *paper = out.scanLine(y);
        for (int x = 0; x < out.width(); ++x)
            paper[x] = uchar(255 - std::max(0, in[x] - rule[x]));
    }
    return out;
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
    QImage evened(depth.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < depth.height(); ++y) {
        const uchar *in = depth.constScanLine(y);
        uchar *out = evened.scanLine(y);
        for (int x = 0; x < depth.width(); ++x)
            out[x] = uchar(255 - std::min(255, in[x] * 255 / scale));
    }
    return evened;
}

} // namespace ZQTPlatform
