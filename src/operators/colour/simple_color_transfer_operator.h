#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "operators/colour/channel_statistics.h"
#include "operators/colour/color_space_chain.h"
#include "operators/real_plane_image_operator.h"

namespace orv {

/// Gives a picture the colours of another one: in l, alpha, beta every channel takes over the
/// mean and the standard deviation of the style.
///
///     sample = (style deviation / deviation) * (sample - mean) + style mean
///
/// One channel passes unchanged. A source channel with deviation 0 takes the style's mean in
/// every sample, so that a grey or flat picture is tinted.
///
/// Units:   samples 0 to 255; statistics in l, alpha, beta of (sample + 1) / 256.
/// Owns:    its chain of colour spaces.
/// Quirk:   colour-offset-stays
/// Source:  [ReinhardAshikhminGoochShirley2001], equations 10 and 11.
class SimpleColorTransferOperator final : public RealPlaneImageOperator {
  public:
    explicit SimpleColorTransferOperator(std::unique_ptr<ColorSpaceChain> chain);

    /// Runs the operator on a picture, as the plane branch tells.
    ///
    /// Cost:    packed colour pictures go through a small buffer twice, with the result of
    ///          `runPlanes` and without its planes.
    std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target) override;

    /// Transfers the style's colours to three planes; reports 20 to 90.
    ///
    /// Shapes:  target of the planes' size, else another one is made.
    /// Domain:  after `setStyle`; samples above -1.
    /// Fails:   never; NaN gives 0. Results lie within 0 to 255.
    /// Cost:    two passes; no memory but the target.
    std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target) override;
    /// The same as `runPlanes`.
    std::unique_ptr<RealImage3> runPlanesAlt(const RealImage3& planes,
                                             std::unique_ptr<RealImage3> target) override;

    /// Takes the statistics of a style picture; reports 0, 0, 6, 13, 20.
    virtual void setStyle(const DiscreteImage& image);

    /// `setStyle` on planes of grey levels, which it overwrites.
    void setStylePlanes(RealImage3& planes);

    /// Mean of each channel of the style.
    const std::array<double, 3>& styleMean() const { return styleMean_; }
    /// Standard deviation of each channel of the style.
    const std::array<double, 3>& styleDeviation() const { return styleDeviation_; }

  private:
    using Statistics = std::array<ChannelStatistics, 3>;

    void enterBlock(const std::array<const double*, 3>& from, const std::array<double*, 3>& to,
                    std::size_t count) const;
    void leaveBlock(const Statistics& source, const std::array<double*, 3>& samples,
                    std::size_t count) const;
    Statistics enterSpace(const RealImage3& planes, RealImage3& target, int firstReport) const;
    void leaveSpace(const Statistics& source, RealImage3& planes) const;
    Statistics packedStatistics(const unsigned char* pixels, int width, int height,
                                int firstReport) const;
    void packedTransfer(const Statistics& source, const DiscreteImage& from,
                        unsigned char* to) const;
    void setStyleStatistics(const Statistics& style);

    std::unique_ptr<ColorSpaceChain> chain_;
    std::array<double, 3> styleMean_;
    std::array<double, 3> styleDeviation_;
};

}  // namespace orv
