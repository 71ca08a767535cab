// The structure tensor of the frame (products of its gradients, averaged over cells of 8 x 8 frame
// pixels) gives for each cell how much edge it holds and how much its edges agree in direction.
// Cells with strong edges are grouped into connected regions; each region's mean tensor gives its
// direction, and its cells' spread along and across that direction its extent.
#include "platform/capture/CodeRegions_p.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace ZQTPlatform {

namespace {

constexpr int cellPixels = 8;         // frame pixels per side of a map cell
constexpr double strongShare = 0.2;   // a cell is strong above this share of the strongest cell
constexpr double barCoherence = 0.55; // mean coherence above which a region is read as bars
constexpr int fewestCells = 4;

struct Tensor
{
    double xx = 0;
    double yy = 0;
    double xy = 0;

    double energy() const { return xx + yy; }
    double coherence() const { return energy() > 0 ? std::hypot(xx - yy, 2 * xy) / energy() : 0; }
    // The dominant gradient direction, in degrees from the x axis.
    double degrees() const { return 0.5 * std::atan2(2 * xy, xx - yy) * 180 / M_PI; }
};

struct TensorMaps
{
    cv::Mat xx, yy, xy, energy;
};

// The tensor per cell, its energy divided by the cell's squared brightness.
TensorMaps tensorMaps(const cv::Mat &grey)
{
    cv::Mat half;
    cv::resize(grey, half, cv::Size(grey.cols / 2, grey.rows / 2), 0, 0, cv::INTER_AREA);
    cv::Mat gx, gy;
    cv::Sobel(half, gx, CV_32F, 1, 0, 3);
    cv::Sobel(half, gy, CV_32F, 0, 1, 3);
    const cv::Size cells(grey.cols / cellPixels, grey.rows / cellPixels);
    TensorMaps maps;
    cv::resize(gx.mul(gx), maps.xx, cells, 0, 0, cv::INTER_AREA);
    cv::resize(gy.mul(gy), maps.yy, cells, 0, 0, cv::INTER_AREA);
    cv::resize(gx.mul(gy), maps.xy, cells, 0, 0, cv::INTER_AREA);
    cv::Mat brightness;
    cv::resize(half, brightness, cells, 0, 0, cv::INTER_AREA);
    brightness.convertTo(brightness, CV_32F);
    cv::blur(brightness, brightness, cv::Size(5, 5));
    // Sobel's gain is 8 for a step of one grey level per pixel; 16 keeps black cells finite.
    cv::Mat light = brightness.mul(brightness) * 64 + 16 * 16 * 64;
    cv::divide(maps.xx + maps.yy, light, maps.energy);
    cv::blur(maps.energy, maps.energy, cv::Size(3, 3));
    return maps;
}

CodeRegion regionOf(const std::vector<cv::Point> &cells, const TensorMaps &maps)
{
    Tensor mean;
    for (const cv::Point &cell : cells) {
        mean.xx += maps.xx.at<float>(cell);
        mean.yy += maps.yy.at<float>(cell);
        mean.xy += maps.xy.at<float>(cell);
    }
    CodeRegion region;
    region.linear = mean.coherence() > barCoherence;
    region.axisDegrees = region.linear ? mean.degrees() : double(cv::minAreaRect(cells).angle);
    const double turn = region.axisDegrees * M_PI / 180;
    const cv::Point2d along(std::cos(turn), std::sin(turn));
    const cv::Point2d across(-along.y, along.x);
    double low[2] = {1e9, 1e9};
    double high[2] = {-1e9, -1e9};
    for (const cv::Point &cell : cells) {
        const cv::Point2d at(cell.x + 0.5, cell.y + 0.5);
        const double a = at.dot(along);
        const double b = at.dot(across);
        low[0] = std::min(low[0], a);
        high[0] = std::max(high[0], a);
        low[1] = std::min(low[1], b);
        high[1] = std::max(high[1], b);
    }
    const cv::Point2d middle = along * ((low[0] + high[0]) / 2) + across * ((low[1] + high[1]) / 2);
    region.centre = QPointF(middle.x * cellPixels, middle.y * cellPixels);
    region.length = (high[0] - low[0] + 1) * cellPixels;
    region.thickness = (high[1] - low[1] + 1) * cellPixels;
    return region;
}

// A VIN's bars are shorter than its code is long. A region of bars that is thicker than long has
// its direction turned by a quarter: a hand's motion across the bars smears their edges until the
// bars' ends and the streaks along them hold most of the gradient. Done on whole regions only, once
// their pieces are joined: a short piece of a code is thicker than long and has its direction right.
CodeRegion lengthwise(CodeRegion region)
{
    if (region.linear && region.thickness > region.length) {
        region.axisDegrees += region.axisDegrees > 0 ? -90 : 90;
        std::swap(region.length, region.thickness);
    }
    return region;
}

// Connected strong cells and the region they make.
struct Piece
{
    std::vector<cv::Point> cells;
    double weight = 0;
    CodeRegion region;
};

// Whether the bars of b go on those of a: both 1-D, nearly the same direction, b's centre on a's
// axis line (within half of a's thickness) and no further from a's end than twice the longer is long.
bool continuesBars(const CodeRegion &a, const CodeRegion &b)
{
    constexpr double sameDirection = 6; // degrees
    if (!a.linear || !b.linear)
        return false;
    const double turn = std::remainder(a.axisDegrees - b.axisDegrees, 180.0);
    if (std::abs(turn) > sameDirection)
        return false;
    const double radians = a.axisDegrees * M_PI / 180;
    const QPointF offset = b.centre - a.centre;
    const double along = offset.x() * std::cos(radians) + offset.y() * std::sin(radians);
    const double across = -offset.x() * std::sin(radians) + offset.y() * std::cos(radians);
    return std::abs(across) < a.thickness / 2 && std::abs(along) < a.length / 2 + b.length / 2 + 2 * std::max(a.length, b.length);
}

// The connected groups of at least fewestCells cells of a mask.
std::vector<Piece> piecesOf(const cv::Mat &mask, const TensorMaps &maps)
{
    cv::Mat labels;
    const int count = cv::connectedComponents(mask, labels, 8, CV_32S);
    std::vector<Piece> pieces(size_t(std::max(0, count)));
    for (int y = 0; y < labels.rows; ++y) {
        for (int x = 0; x < labels.cols; ++x) {
            const int label = labels.at<int>(y, x);
            if (label > 0) {
                pieces[size_t(label)].cells.emplace_back(x, y);
                pieces[size_t(label)].weight += maps.energy.at<float>(y, x);
            }
        }
    }
    pieces.erase(std::remove_if(pieces.begin(), pieces.end(), [](const Piece &piece) { return int(piece.cells.size()) < fewestCells; }),
                 pieces.end());
    for (Piece &piece : pieces)
        piece.region = regionOf(piece.cells, maps);
    return pieces;
}

} // namespace

cv::Mat greyMatrix(const PixelLayout &frame)
{
    if (frame.isGrey() && frame.pixelStride == 1)
        return cv::Mat(frame.height, frame.width, CV_8UC1, const_cast<uchar *>(frame.data), size_t(frame.rowStride));
    thread_local cv::Mat copy;
    copy.create(frame.height, frame.width, CV_8UC1); // continuous: rows without padding
    copyLuminance(frame, copy.data, qsizetype(copy.step));
    return copy;
}

QList<CodeRegion> findCodeRegions(const cv::Mat &grey, int maxRegions)
{
    if (grey.cols < 4 * cellPixels || grey.rows < 4 * cellPixels)
        return {};
    const TensorMaps maps = tensorMaps(grey);
    double strongest = 0;
    cv::minMaxLoc(maps.energy, nullptr, &strongest);
    if (strongest <= 0)
        return {};
    // Bars and cells are grouped apart, so that a Data Matrix is not swallowed by the bars of the
    // printed text beside it.
    const cv::Mat strong = maps.energy > strongest * strongShare;
    cv::Mat coherence;
    cv::Mat difference = maps.xx - maps.yy;
    cv::magnitude(difference, 2 * maps.xy, coherence);
    cv::divide(coherence, maps.xx + maps.yy + 1e-6, coherence);
    const cv::Mat barred = coherence > barCoherence;
    std::vector<Piece> pieces = piecesOf(strong & barred, maps);
    std::vector<Piece> cellular = piecesOf(strong & ~barred, maps);
    pieces.insert(pieces.end(), cellular.begin(), cellular.end());

    // Pieces of one 1-D code (split by a glare spot, a dark corner or a smeared stretch) are joined
    // until no piece continues the bars of another; a joined piece's region is measured anew.
    for (bool joined = true; joined;) {
        joined = false;
        for (size_t a = 0; a < pieces.size() && !joined; ++a) {
            for (size_t b = 0; b < pieces.size() && !joined; ++b) {
                if (a == b || !continuesBars(pieces[a].region, pieces[b].region))
                    continue;
                pieces[a].cells.insert(pieces[a].cells.end(), pieces[b].cells.begin(), pieces[b].cells.end());
                pieces[a].weight += pieces[b].weight;
                pieces[a].region = regionOf(pieces[a].cells, maps);
                pieces.erase(pieces.begin() + qsizetype(b));
                joined = true;
            }
        }
    }
    std::stable_sort(pieces.begin(), pieces.end(), [](const Piece &a, const Piece &b) { return a.weight > b.weight; });
    QList<CodeRegion> regions;
    for (const Piece &piece : pieces) {
        if (regions.size() >= maxRegions)
            break;
        regions.append(lengthwise(piece.region));
    }
    return regions;
}

} // namespace ZQTPlatform
