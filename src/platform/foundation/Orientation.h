// Interface orientations and orientation masks, numbered as the platform numbers them: an
// interface orientation n has the mask bit 1 << n.
#pragma once

namespace ZQTPlatform {
namespace InterfaceOrientation {

constexpr int Unknown = 0;
constexpr int Portrait = 1;
constexpr int PortraitUpsideDown = 2;
constexpr int LandscapeRight = 3;
constexpr int LandscapeLeft = 4;

constexpr unsigned mask(int orientation) { return 1u << orientation; }

constexpr unsigned MaskPortrait = mask(Portrait);                              // 2
constexpr unsigned MaskLandscape = mask(LandscapeLeft) | mask(LandscapeRight); // 24
constexpr unsigned MaskAllButUpsideDown = MaskPortrait | MaskLandscape;        // 26

// Device orientations 1 to 4 name the same values; others (face up 5, face down 6) have none.
constexpr bool isInterfaceOrientation(int value) { return value >= Portrait && value <= LandscapeLeft; }

// The video orientation a camera connection takes for an interface orientation: upside down and
// both landscapes as they are, anything else (portrait, unknown) portrait.
constexpr int videoOrientationFor(int orientation)
{
    return orientation == PortraitUpsideDown || orientation == LandscapeRight || orientation == LandscapeLeft
        ? orientation
        : Portrait;
}

} // namespace InterfaceOrientation
} // namespace ZQTPlatform
