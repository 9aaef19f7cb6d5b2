#pragma once

#include <memory>
#include <vector>

#include "images/float_image.h"
#include "images/float_image3.h"
#include "operators/image_operator.h"
#include "operators/susan/susan_mask.h"

namespace orv {

/// SUSAN smoothing: each pixel becomes a weighted mean of its surroundings, in which neighbours
/// count less the further away they lie and the more they differ.
///
///     w = exp(-((n - c) / threshold)^2) exp(-(dx^2 + dy^2) / (2 sigma^2))
///     c' = c + sum of w (n - c) / sum of w
///
/// The sums run over a disc of radius 3.4 without its centre, so that a lone noisy pixel takes
/// on the value of its surroundings. Works on pictures themselves and on planes of floats.
///
/// Units:   threshold in grey levels, sigma in pixels.
/// Domain:  every double; a threshold of 0 or NaN and a sigma of 0 give a black picture.
/// Quirk:   susan-missing-neighbour, susan-black
/// Source:  [SmithBrady1997]
class SusanRestorationOperator : public ImageOperator {
  public:
    SusanRestorationOperator(int iterations, double threshold, double sigma);

    /// Runs the passes on a picture of one channel (`value`) or of three.
    ///
    /// Reports progress as `SusanProgress` tells; 0 passes give a clone and no report.
    ///
    /// Shapes:  a target of the source's size, or null; other counts of channels change nothing.
    /// Fails:   never.
    std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target) override;

    /// The passes on one plane, without truncation between them.
    ///
    /// One pass on whole grey levels, truncated, is what `apply` gives.
    ///
    /// Units:   grey levels.
    std::unique_ptr<FloatImage> runPlane(const FloatImage& plane) const;

    /// `runPlane` on each of three planes; a target of another size is let go.
    std::unique_ptr<FloatImage3> runPlanes(const FloatImage3& planes,
                                           std::unique_ptr<FloatImage3> target) const;

    /// Passes.
    int iterations() const { return iterations_; }
    /// 36, the disc as it is drawn; the entry 28 among them meets no pixel.
    int maskSize() const { return maskSize_; }
    /// x offset of entry k.
    int maskX(int k) const { return maskX_[static_cast<std::size_t>(k)]; }
    /// y offset of entry k.
    int maskY(int k) const { return maskY_[static_cast<std::size_t>(k)]; }
    /// Spatial weight of entry k.
    double maskWeight(int k) const { return maskWeights_[static_cast<std::size_t>(k)]; }
    /// The difference, in grey levels, at which a neighbour's weight has fallen to 1 / e.
    double threshold() const { return threshold_; }
    /// Standard deviation of the spatial weights.
    double sigma() const { return sigma_; }

  private:
    SusanMask mask() const {
        return {maskSize_, maskX_.data(), maskY_.data(), maskWeights_.data()};
    }
    void runPass(int pass, const DiscreteImage& from, DiscreteImage& to) const;

    int iterations_;
    int maskSize_;
    std::vector<int> maskX_;
    std::vector<int> maskY_;
    std::vector<double> maskWeights_;
    double threshold_;
    double sigma_;
};

}  // namespace orv
