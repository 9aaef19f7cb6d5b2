#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// How far samples lie apart, in grey levels from 0 to 255 whatever the depth.
struct DifferenceFigures {
    double meanSquare = 0.0;  ///< mean of (after - before)^2
    double mean = 0.0;        ///< mean of |after - before|
    double largest = 0.0;     ///< largest |after - before|
    double shift = 0.0;       ///< mean of after - before
    double changed = 0.0;     ///< share of the samples that differ at all, from 0 to 1

    /// 10 log10(255^2 / meanSquare) decibels; infinite when nothing differs.
    double psnr() const;
};

/// A channel of two pictures.
struct ChannelComparison {
    /// The largest difference that has a place of its own.
    static constexpr int kLevels = 255;

    std::string_view name;  ///< "red", "green", "blue" or "grey"
    DifferenceFigures figures;
    /// Samples by after - before, rounded to whole levels, from -255 to 255.
    std::array<std::uint64_t, 2 * kLevels + 1> differences{};
    /// Samples by grey level, rounded, from 0 to 255.
    std::array<std::uint64_t, kLevels + 1> before{};
    std::array<std::uint64_t, kLevels + 1> after{};
};

/// What two pictures have to say about transparency.
enum class AlphaComparison { None, Equal, Differs, OnlyBefore, OnlyAfter };

/// What two pictures of one size differ by. Alpha counts in `alpha` alone.
struct PictureComparison {
    std::vector<ChannelComparison> channels;  ///< one when both pictures are grey, or three
    DifferenceFigures figures;                ///< of all channels together
    double ssim = 0.0;  ///< of the brightness; NaN below 11 samples a side
    AlphaComparison alpha = AlphaComparison::None;

    /// Whether all samples of colour are the same.
    bool identical() const { return figures.changed == 0.0; }
    /// The largest d such that at least `share` of the samples differ by less than d + 1/2.
    int differenceOfShare(double share) const;
};

/// Why two pictures can't be compared, as one line with both sizes; empty when they can.
std::string sizeRefusal(const std::string& beforePath, const Picture& before,
                        const std::string& afterPath, const Picture& after);

/// Compares two pictures of one size.
///
/// Depths may differ: all is reckoned on the scale from 0 to 255, in double precision. A grey
/// picture against one in colour counts as three equal channels.
///
/// Cost:    one pass over the rows of both, and that of StructuralSimilarity.
PictureComparison comparePictures(const Picture& before, const Picture& after);

/// "none", "equal", "differs", "only before", "only after".
std::string_view nameOf(AlphaComparison alpha);

}  // namespace orv::cli
