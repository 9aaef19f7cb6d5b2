#pragma once

#include <span>
#include <string_view>

#include "methods/method.h"

namespace orv {

/// Which planes a noise filter takes a colour picture apart into: the values of `--colours`.
enum WorkingColours : int {
    RgbColours = 0,       ///< red, green, blue
    OpponentColours = 1,  ///< brightness and two differences of colour
};

/// What a diffusion finds beyond the border: the values of `--border`.
enum WorkingBorder : int {
    StillBorder = 0,     ///< nothing; the outermost samples hardly change
    MirroredBorder = 1,  ///< a frame of one sample, mirrored
};

std::span<const Choice> workingColoursChoices();
std::span<const Choice> workingBorderChoices();

inline constexpr std::string_view kColoursHelp = "planes that a colour picture is worked on in";
inline constexpr std::string_view kChromaHelp =
    "noise of the colour planes as a multiple of that of brightness; with opponent";
inline constexpr std::string_view kBorderHelp = "what happens to the outermost pixels";

/// Red, green and blue become brightness and two differences of colour, in place.
///
///     y = (r + g + b) / 3    c1 = (r - b) / sqrt(6)    c2 = (r - 2 g + b) / sqrt(18)
///
/// An orthonormal turn of the three axes, shrunk by sqrt(3) so that y is in grey levels: noise
/// of one strength in all three channels has one strength in all three planes, while the
/// picture is mostly in y.
///
/// Shapes:  three planes of one size.
void turnToOpponent(Planes& planes);

/// Undoes turnToOpponent(), up to rounding.
void turnToRgb(Planes& planes);

/// The plane within a frame of `left` and so on mirrored samples; the border sample is doubled.
///
/// Domain:  any size from 1 x 1; a frame wider than the plane is mirrored again.
std::unique_ptr<FloatImage> framed(const FloatImage& plane, int left, int top, int right,
                                   int bottom);

/// width x height samples of the plane from (left, top) on.
std::unique_ptr<FloatImage> cropped(const FloatImage& plane, int left, int top, int width,
                                    int height);

}  // namespace orv
