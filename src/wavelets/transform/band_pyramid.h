#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "wavelets/transform/band_range.h"
#include "wavelets/transform/wavelet_filter.h"

namespace orv {

class RealImage;

/// The coefficients of FwtImage with each band a plane of its own, for a picture that stands in
/// the low corner of a periodic plane of zeros.
///
/// Only the part of a band that the picture reaches is kept and worked on; everything outside it
/// is +0 in the coefficients of the whole plane, and the inverse takes it as +0. Kept
/// coefficients and results have the bits of FwtImage and IwtImage on the padded plane. A
/// picture as large as the plane keeps its bands whole.
///
/// Owns:    the bands.
/// Fails:   memory that can't be had throws std::bad_alloc.
/// Cost:    the samples of the picture, not of the plane.
class BandPyramid {
  public:
    /// Whether every pass meets even sizes: width and height are multiples of 2^levels, and
    /// levels is at least 1.
    static bool fits(int width, int height, int levels);

    /// Transforms the picture into bands.
    ///
    /// Shapes:  source at most width x height, which must satisfy fits().
    BandPyramid(const RealImage& source, int width, int height, int levels,
                const WaveletFilter& analysisLow, const WaveletFilter& analysisHigh);
    ~BandPyramid();
    BandPyramid(const BandPyramid&) = delete;
    BandPyramid& operator=(const BandPyramid&) = delete;

    /// Transforms the bands back and writes the plane's low corner of the target's size; the
    /// bands stay as they are.
    void inverse(RealImage& target, const WaveletFilter& synthesisLow,
                 const WaveletFilter& synthesisHigh) const;

    /// Levels of the transform.
    int levels() const { return static_cast<int>(details_.size()); }
    /// Size of a whole band of `level`, 1 being the finest.
    int bandWidth(int level) const { return width_ >> level; }
    int bandHeight(int level) const { return height_ >> level; }

    /// The kept part of a band: level 1 (finest) to levels(), detail 0 high along x, 1 high along
    /// y, 2 high along both.
    RealImage& band(int level, int detail);
    const RealImage& band(int level, int detail) const;
    /// Positions that the kept parts of a level take in their whole bands.
    BandRange xRange(int level) const { return levelAt(level).x; }
    BandRange yRange(int level) const { return levelAt(level).y; }
    /// The kept part of what is low along both at the last level.
    RealImage& approximation() { return *approximation_; }

    /// The whole band, zeros included, as ExtractBand gives it.
    std::unique_ptr<RealImage> wholeBand(int level, int detail) const;

  private:
    struct Level {
        BandRange x;
        BandRange y;
        std::array<std::unique_ptr<RealImage>, 3> bands;
    };

    const Level& levelAt(int level) const {
        return details_[static_cast<std::size_t>(level - 1)];
    }

    int width_;
    int height_;
    std::vector<Level> details_;
    std::unique_ptr<RealImage> approximation_;
};

}  // namespace orv
