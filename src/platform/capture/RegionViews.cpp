#include "platform/capture/RegionViews_p.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace ZQTPlatform {

namespace {

constexpr double samplesPerPixel = 2;   // along a 1-D code
constexpr double endMargin = 0.12;      // beyond each end of a 1-D region, a share of its length: the quiet zones
// Around a 2-D region, a share of its side: a glare spot or a dark corner can hide part of a
// symbol from the region finder, and a rectangular symbol's region may be its shorter part only.
constexpr double matrixMargin = 0.5;
constexpr int profileRows = 4;
// The windows that follow paper and ink along a line, as parts of its length: 5 to 8 modules of a
// VIN code (more than its widest bar or space; what a glare spot needs), and 15 to 25 (steadier
// where the light is even but the bars are faint).
constexpr int flatteningWindows[] = {40, 12};
// The three bands across a 1-D region: their centres and heights as shares of its thickness.
constexpr double bandCentres[] = {0, -0.22, 0.22};
constexpr double bandHeight = 0.25;
// Sharpening strengths of the unsharp mask (one frame pixel wide): blur that leaves narrow bars
// a fraction of the contrast of wide ones.
constexpr double sharpening[] = {0, 3};
// Thresholds at the line's local mean, over windows of the line's length divided by these: a
// narrow bar smeared to a shallow dip between wide spaces still lies below its neighbourhood's
// mean, where a threshold for the whole line misses it. About 3 and 1.5 modules of a VIN code.
constexpr int localMeanParts[] = {80, 160};
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
    const cv::Mat kernel = cv::Mat::ones(1, window, CV_8U);
    cv::Mat paper, ink;
    cv::dilate(line, paper, kernel);
    cv::erode(line, ink, kernel);
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

// A line as a picture a few identical rows high: levels 0..1 (float) or a mask (bytes, 0 or 255).
TurnedLuminance picture(const cv::Mat &line, const QTransform &toFrame)
{
    TurnedLuminance view;
    view.width = line.cols;
    view.height = profileRows;
    view.toFrame = toFrame;
    view.pixels.resize(size_t(view.width) * profileRows);
    cv::Mat bytes = line;
    if (line.type() != CV_8U)
        line.convertTo(bytes, CV_8U, 255);
    for (int row = 0; row < profileRows; ++row)
        std::copy_n(bytes.ptr<uchar>(0), view.width, view.pixels.begin() + qsizetype(row) * view.width);
    return view;
}

} // namespace

std::vector<std::vector<TurnedLuminance>> barProfiles(const cv::Mat &grey, const CodeRegion &region)
{
    std::vector<std::vector<TurnedLuminance>> bands;
    const double length = region.length * (1 + 2 * endMargin);
    const int width = int(length * samplesPerPixel);
    const int rows = std::max(1, int(region.thickness * bandHeight));
    if (width < 16)
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
        for (int flatteningParts : flatteningWindows) {
            const cv::Mat flat = flattened(line, std::max(9, width / flatteningParts));
            cv::Mat smooth;
            cv::GaussianBlur(flat, smooth, cv::Size(0, 0), samplesPerPixel, 0);
            for (double strength : sharpening) {
                const cv::Mat sharp = flat + (flat - smooth) * strength;
                views.push_back(picture(cv::min(cv::max(sharp, 0), 1), pictureToFrame));
            }
            for (int parts : localMeanParts) {
                const int window = std::max(3, width / parts) | 1;
                cv::Mat mean;
                cv::blur(flat, mean, cv::Size(window, 1), cv::Point(-1, -1), cv::BORDER_REPLICATE);
                // Light samples are paper unless clearly below the mean (a narrow bar), dark ones ink
                // unless clearly above it (a narrow space): noise on the quiet zones stays paper and
                // the middle of a wide bar stays ink.
                const cv::Mat light = flat >= 0.5;
                views.push_back(picture((light & (flat > mean - inkMargin)) | (~light & (flat > mean + inkMargin)), pictureToFrame));
            }
        }
        bands.push_back(std::move(views));
    }
    return bands;
}

TurnedLuminance matrixView(const cv::Mat &grey, const CodeRegion &region)
{
    const double side = std::max(region.length, region.thickness) * (1 + 2 * matrixMargin);
    const int size = int(side);
    if (size < 16)
        return {};
    const QTransform toFrame = levelToFrame(region.centre, region.axisDegrees, size, size, 1, 1);
    cv::Mat level;
    resampled(grey, toFrame, cv::Size(size, size)).convertTo(level, CV_32F);
    cv::GaussianBlur(level, level, cv::Size(0, 0), 1.2);
    const int window = std::max(5, size / 6) | 1;
    cv::Mat paper;
    cv::dilate(level, paper, cv::getStructuringElement(cv::MORPH_RECT, cv::Size(window, window)));
    cv::blur(paper, paper, cv::Size(window, window));
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
