// Where a frame probably shows a barcode, found from the energy and direction of its gradients:
// the first step of reading labels that are dark, glared, turned or seen at an angle, where a
// reader that scans the whole frame in straight rows fails.
#pragma once

#include "platform/capture/PixelLayout_p.h"

#include <QList>
#include <QPointF>

#include <opencv2/core/mat.hpp>

namespace ZQTPlatform {

// One place that looks like a code, in frame pixels.
struct CodeRegion
{
    QPointF centre;
    double axisDegrees = 0; // 1-D: the direction across the bars; 2-D: a side of the symbol
    double length = 0;      // extent along the axis
    double thickness = 0;   // extent across it
    bool linear = false;    // parallel bars (1-D code) rather than cells in both directions
};

// The frame's luminance as an 8-bit matrix: the plane itself when it is one (no copy), else a
// copy held per thread from frame to frame.
cv::Mat greyMatrix(const PixelLayout &frame);

// The regions of a grey frame most likely to hold a code, strongest first, at most maxRegions.
// Gradient energy is measured relative to the local brightness, so dark frames and the rim of a
// glare spot count as much as well-lit ones; the coherence of the gradient directions tells bars
// from cells and text. Cost at 1920 x 1080: one half-size resample and gradient (2-4 ms).
QList<CodeRegion> findCodeRegions(const cv::Mat &grey, int maxRegions);

} // namespace ZQTPlatform
