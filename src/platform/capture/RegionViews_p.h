// Level, cleaned-up copies of a code's region for a reader that scans straight rows: what lets it
// read labels in the dark, under glare, blurred, turned and seen at an angle.
#pragma once

#include "platform/capture/CodeRegions_p.h"
#include "platform/capture/TurnedLuminance_p.h"

#include <vector>

namespace ZQTPlatform {

// The largest (or smallest) sample of a line (one row, float) within window samples around each
// sample, as a dilation (erosion) with a centred window of that size gives it, in a time that does
// not grow with the window: a window of a few hundred samples costs what one of ten does.
cv::Mat runningExtreme(const cv::Mat &line, int window, bool largest);

// How far a 1-D region's lines reach beyond its ends: to its quiet zones, or 0.8 of the region's
// length, where a glare spot or a dark corner may have hidden the rest of the code from the region
// finder (a line that far takes in the label's edge and what lies beyond, which can spoil the read
// of a code that the shorter line reads).
enum class LineReach { ToTheQuietZones, PastTheRegion };

// The bars of a 1-D region read along three bands across them (the middle and one to each side,
// so that a glare spot or the narrow end of a label seen at an angle spoils one band, not all):
// each band is averaged along the bars into one line at two samples per frame pixel (noise falls
// with the square root of the band's height; the bars stay sharp because the region's direction
// comes from its gradients) and flattened against its local paper and ink levels (low light,
// glare) over three windows. Each line gives several pictures one row high: as it is, sharpened,
// and thresholded at its local mean over two windows (motion blur, defocus). Cost: one resample
// per band (0.3 to 0.8 ms for a 1080p label); the rest is on single lines.
std::vector<std::vector<TurnedLuminance>> barProfiles(const cv::Mat &grey, const CodeRegion &region, LineReach reach);

// The region of a 2-D code, turned level with a margin, smoothed against shot noise (its cells are
// eight pixels or more) and divided by its paper's brightness, stretched to full scale. Cost:
// about 1 ms for a 1080p label.
TurnedLuminance matrixView(const cv::Mat &grey, const CodeRegion &region);

} // namespace ZQTPlatform
