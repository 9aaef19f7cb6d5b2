#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "images/real_image3.h"
#include "operators/colour/color_space_chain.h"
#include "operators/colour/color_swatch.h"
#include "operators/image_operator.h"

namespace orv {

/// Gives colour to a grey picture: each pixel takes alpha and beta of the swatch of a colour
/// picture that is as light and as lively as the pixel's surroundings, and keeps its own l.
///
///     score = (deviation + mean) / 2 of l over a window
///     swatch = argmin of (score - swatch score)^2, the earliest of equals
///
/// Swatches are squares at random places. A NaN score, which a window with a black pixel has,
/// takes the first swatch.
///
/// Owns:    its chain of colour spaces and its swatches.
/// Quirk:   swatch-window, swatches-go-on
/// Source:  [WelshAshikhminMueller2002], section 2.
class ColorToGreyTransferOperator : public ImageOperator {
  public:
    /// The side of a swatch when nothing else is asked for, in pixels.
    static constexpr int kSwatchSize = 5;

    explicit ColorToGreyTransferOperator(std::unique_ptr<ColorSpaceChain> chain,
                                         int swatchSize = kSwatchSize);
    ~ColorToGreyTransferOperator() override;

    /// Runs the operator on a picture; a null target is made as a colour picture.
    ///
    /// Domain:  after `learnSwatches`.
    /// Fails:   null when no swatch has been learned.
    /// Cost:    packed pictures take one plane of memory, others what `runPlanes` takes.
    std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target) override;

    /// Draws (width + height) / 2 swatches from a colour picture.
    ///
    /// Each place is drawn, x then y, until it lies `swatchSize` pixels inside; the state of
    /// `runtimeRandom` goes on from call to call.
    ///
    /// Domain:  at least 2 `swatchSize` + 1 pixels wide and high, 11 x 11 for the usual size. On
    ///          a smaller picture no place fits, and the call doesn't come back.
    virtual void learnSwatches(const DiscreteImage& image);

    /// `learnSwatches` on planes of grey levels, which it overwrites.
    void learnSwatchPlanes(RealImage3& planes);

    /// Colours three planes of grey levels, which it overwrites; results lie within 0 to 255.
    ///
    /// Fails:   null when no swatch has been learned.
    /// Cost:    two passes, 36 samples a pixel for the windows; one plane of memory.
    std::unique_ptr<RealImage3> runPlanes(std::unique_ptr<RealImage3> planes) const;

    /// Mean of each channel of the colour picture; nothing reads it.
    const std::array<double, 3>& styleMean() const { return styleMean_; }
    /// Standard deviation of each channel of the colour picture; nothing reads it.
    const std::array<double, 3>& styleDeviation() const { return styleDeviation_; }
    /// The number of swatches.
    int swatchCount() const { return swatchCount_; }
    /// The side of a swatch in pixels.
    int swatchSize() const { return swatchSize_; }
    /// Swatch k, in the order of drawing.
    const ColorSwatch& swatch(int k) const { return *swatches_[static_cast<std::size_t>(k)]; }

  private:
    std::unique_ptr<ColorSwatch> drawSwatch(const RealImage3& lab) const;
    void enterBlock(const std::array<double*, 3>& samples, std::size_t count) const;
    void leaveColumn(const std::array<const double*, 3>& from, const std::array<double*, 3>& to,
                     std::size_t count) const;
    int halfWindow() const;
    void enterSpace(RealImage3& planes, std::array<LaneSums, 3>* sums) const;
    std::unique_ptr<RealImage> leaveSpace(RealImage3& planes) const;
    void colourPacked(const DiscreteImage& source, unsigned char* to) const;

    std::unique_ptr<ColorSpaceChain> chain_;
    std::array<double, 3> styleMean_;
    std::array<double, 3> styleDeviation_;
    int swatchCount_;
    int swatchSize_;
    std::vector<std::unique_ptr<ColorSwatch>> swatches_;
};

}  // namespace orv
