#include "platform/capture/RegionViews_p.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace ZQTPlatform {

namespace {

constexpr double samplesPerPixel = 2;   // along a 1-D code
// Beyond each end of a 1-D region, shares of its length: its quiet zones (LineReach::ToTheQuietZones),
// or (LineReach::PastTheRegion) the rest of a code whose part under a glare spot or in a dark
// corner the region finder missed.
constexpr double quietMargin = 0.12;
constexpr double farMargin = 0.8;
// Around a 2-D region, a share of its side: a glare spot or a dark corner can hide part of a
// symbol from the region finder, and a rectangular symbol's region may be its shorter part only.
constexpr double matrixMargin = 0.5;
constexpr double largestMatrixView = 720; // pixels per side
// The windows that follow paper and ink along a line, as parts of the code's length: 5 to 8
// modules of a VIN code (more than its widest bar or space; what a glare spot needs), 15 to 25
// (steadier where the light is even but the bars are faint), and 50 to 70 (light that is even over
// the whole code, bars that blur leaves faint).
constexpr int flatteningWindows[] = {32, 10, 4};
// The three bands across a 1-D region: their centres and heights as shares of its thickness.
constexpr double bandCentres[] = {0, -0.22, 0.22};
constexpr double bandHeight = 0.25;
// Sharpening strengths of the unsharp mask (one frame pixel wide): blur that leaves narrow bars
// a fraction of the contrast of wide ones.
constexpr double sharpening[] = {0, 3};
// Thresholds at the line's local mean, over windows of the code's length divided by these: a
// narrow bar smeared to a shallow dip between wide spaces still lies below its neighbourhood's
// mean, where a threshold for the whole line misses it. About 4 and 2 modules of a VIN code.
constexpr int localMeanParts[] = {64, 128};
constexpr double inkMargin = 0.05; // of the span from ink to paper

// The map from a level picture of width x height to the frame: its centre on centre, its x axis
// along degrees, one picture pixel step frame pixels along and rowStep across.
QTransform levelToFrame(const QPointF &centre, double degrees, double width, double height, double step, double rowStep)
{
    QTransform map;
    map.translate(centre.x(), centre.y());
    map.rotate(degrees);
    map.scale(step, rowStep);
    map.translate(-width / 2, -height / 2);
    return map;
}

cv::Mat resampled(const cv::Mat &grey, const QTransform &toFrame, const cv::Size &size)
{
    const cv::Matx23d map(toFrame.m11(), toFrame.m21(), toFrame.m31(), toFrame.m12(), toFrame.m22(), toFrame.m32());
    cv::Mat level;
    cv::warpAffine(grey, level, map, size, cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
    return level;
}

// Paper and ink followed along a line (windows of a few modules: the light of a glare spot or a
// dark corner changes little within one), the line scaled between them. Where the two are closer
// than a tenth of the line's whole range (the quiet zones, paper only) the line counts as paper.
cv::Mat flattened(const cv::Mat &line, int window)
{
    cv::Mat paper = runningExtreme(line, window, true);
    cv::Mat ink = runningExtreme(line, window, false);
    cv::blur(paper, paper, cv::Size(window, 1));
    cv::blur(ink, ink, cv::Size(window, 1));
    double low = 0;
    double high = 0;
    cv::minMaxLoc(line, &low, &high);
    const double leastSpan = std::max(8.0, 0.1 * (high - low));
    ink = cv::min(ink, paper - leastSpan);
    cv::Mat flat;
    cv::divide(line - ink, paper - ink, flat);
    return flat;
}

// A line as a picture one row high: levels 0..1 (float) or a mask (bytes, 0 or 255).
TurnedLuminance picture(const cv::Mat &line, const QTransform &toFrame)
{
    TurnedLuminance view;
    view.width = line.cols;
    view.height = 1;
    view.toFrame = toFrame;
    cv::Mat bytes = line;
    if (line.type() != CV_8U)
        line.convertTo(bytes, CV_8U, 255);
    view.pixels.assign(bytes.ptr<uchar>(0), bytes.ptr<uchar>(0) + view.width);
    return view;
}

// The pictures of one flattened line: as it is, sharpened, and thresholded at its local means.
void addPictures(const cv::Mat &flat, int codeSamples, const QTransform &toFrame, std::vector<TurnedLuminance> &views)
{
    cv::Mat smooth;
    cv::GaussianBlur(flat, smooth, cv::Size(0, 0), samplesPerPixel, 0);
    for (double strength : sharpening) {
        const cv::Mat sharp = flat + (flat - smooth) * strength;
        views.push_back(picture(cv::min(cv::max(sharp, 0), 1), toFrame));
    }
    for (int parts : localMeanParts) {
        const int window = std::max(3, codeSamples / parts) | 1;
        cv::Mat mean;
        cv::blur(flat, mean, cv::Size(window, 1), cv::Point(-1, -1), cv::BORDER_REPLICATE);
        // Light samples are paper unless clearly below the mean (a narrow bar), dark ones ink unless
        // clearly above it (a narrow space): noise on the quiet zones stays paper and the middle of a
        // wide bar stays ink.
        const cv::Mat light = flat >= 0.5;
        views.push_back(picture((light & (flat > mean - inkMargin)) | (~light & (flat > mean + inkMargin)), toFrame));
    }
}

} // namespace

// The running extreme within blocks of window samples, from each block's start and from its end,
// combined (van Herk, Gil and Werman).
cv::Mat runningExtreme(const cv::Mat &line, int window, bool largest)
{
    const auto pick = [largest](float a, float b) { return largest ? std::max(a, b) : std::min(a, b); };
    const int count = line.cols;
    const int before = window / 2;
    const int padded = count + window - 1;
    const float *samples = line.ptr<float>(0);
    std::vector<float> fromStart(static_cast<size_t>(padded));
    std::vector<float> fromEnd(static_cast<size_t>(padded));
    const auto at = [&](int i) { return samples[std::clamp(i - before, 0, count - 1)]; };
    for (int i = 0; i < padded; ++i)
        fromStart[size_t(i)] = i % window == 0 ? at(i) : pick(fromStart[size_t(i - 1)], at(i));
    for (int i = padded - 1; i >= 0; --i)
        fromEnd[size_t(i)] = i == padded - 1 || (i + 1) % window == 0 ? at(i) : pick(fromEnd[size_t(i + 1)], at(i));
    cv::Mat extreme(1, count, CV_32F);
    for (int i = 0; i < count; ++i)
        extreme.at<float>(0, i) = pick(fromEnd[size_t(i)], fromStart[size_t(i + window - 1)]);
    return extreme;
}

std::vector<std::vector<TurnedLuminance>> barProfiles(const cv::Mat &grey, const CodeRegion &region, LineReach reach)
{
    std::vector<std::vector<TurnedLuminance>> bands;
    // The windows along a line are shares of the code's own length, however far the line reaches.
    const int codeSamples = int(region.length * samplesPerPixel);
    const double margin = reach == LineReach::PastTheRegion ? farMargin : quietMargin;
    const int width = int(region.length * (1 + 2 * margin) * samplesPerPixel);
    const int rows = std::max(1, int(region.thickness * bandHeight));
    if (codeSamples < 16)
        return bands;
    const double turn = region.axisDegrees * M_PI / 180;
    const QPointF across(-std::sin(turn), std::cos(turn));
    for (double centre : bandCentres) {
        const QPointF middle = region.centre + across * (centre * region.thickness);
        const QTransform toFrame = levelToFrame(middle, region.axisDegrees, width, rows, 1 / samplesPerPixel, 1);
        cv::Mat band;
        resampled(grey, toFrame, cv::Size(width, rows)).convertTo(band, CV_32F);
        cv::Mat line;
        cv::reduce(band, line, 0, cv::REDUCE_AVG);
        // The pictures' rows all sit on the band's middle line.
        const QTransform pictureToFrame = QTransform(1, 0, 0, 0, 0, 0, 0, rows / 2.0, 1) * toFrame;
        std::vector<TurnedLuminance> views;
        for (int flatteningParts : flatteningWindows)
            addPictures(flattened(line, std::max(9, codeSamples / flatteningParts)), codeSamples, pictureToFrame, views);
        bands.push_back(std::move(views));
    }
    return bands;
}

TurnedLuminance matrixView(const cv::Mat &grey, const CodeRegion &region)
{
    const double side = std::max(region.length, region.thickness) * (1 + 2 * matrixMargin);
    // Cells of eight frame pixels or more keep four or more at this size; a larger view costs more
    // and reads no better.
    const int size = int(std::min(side, largestMatrixView));
    if (size < 16)
        return {};
    const double step = side / size;
    const QTransform toFrame = levelToFrame(region.centre, region.axisDegrees, size, size, step, step);
    cv::Mat level;
    resampled(grey, toFrame, cv::Size(size, size)).convertTo(level, CV_32F);
    cv::GaussianBlur(level, level, cv::Size(0, 0), 1.2 / step);
    // The paper's brightness varies slowly: it is followed at a quarter of the view's size.
    constexpr int paperScale = 4;
    cv::Mat small;
    cv::resize(level, small, cv::Size(size / paperScale, size / paperScale), 0, 0, cv::INTER_AREA);
    const int window = std::max(3, size / (6 * paperScale)) | 1;
    cv::Mat paper;
    cv::dilate(small, paper, cv::getStructuringElement(cv::MORPH_RECT, cv::Size(window, window)));
    cv::blur(paper, paper, cv::Size(window, window));
    cv::resize(paper, paper, level.size(), 0, 0, cv::INTER_LINEAR);
    cv::Mat ratio;
    cv::divide(level, cv::max(paper, 8.0f), ratio);
    cv::normalize(ratio, ratio, 0, 1, cv::NORM_MINMAX);
    TurnedLuminance view;
    view.width = size;
    view.height = size;
    view.toFrame = toFrame;
    view.pixels.resize(size_t(size) * size);
    cv::Mat bytes(size, size, CV_8U, view.pixels.data());
    ratio.convertTo(bytes, CV_8U, 255);
    return view;
}

} // namespace ZQTPlatform
