#pragma once

#include <cstdio>
#include <memory>

#include "schemes/plane_operators/real_operator.h"
#include "wavelets/transform/wavelet_filter.h"

namespace orv {

class BandPyramid;
class CoefficientBands;

/// Numbers of the shrinkage rules.
inline constexpr int kSureShrink = 0;
inline constexpr int kVisuShrink = 1;
inline constexpr int kBrownianShrink = 2;

/// Denoises a plane by shrinking its wavelet coefficients.
///
/// A plane whose longer side is a power of two is transformed as it is. Any other stands in the
/// corner of a square of zeros, 2 to the floor(log2(longer side)) + 1 wide, and so does one whose
/// sizes some pass could not halve, there in a square as wide as its longer side. The zeros
/// lower the noise estimate, and dim the borders; mirrored() avoids both. Only what the picture
/// reaches is worked on.
///
/// Fails:   a wavelet outside 0 to 5 gives the target, or a copy of the source where it is
///          null; so does an unknown algorithm, which is told on standard error. Levels that come
///          out below 1 give a copy of the source after the rule has run for its texts.
/// Cost:    a transform, a rule and an inverse; doubles for about twice the plane.
/// Source:  [DonohoJohnstone1994], [DonohoJohnstone1995], [OgdenParzen1996]
class WaveletShrinkageOperator : public RealOperator {
  public:
    /// Domain:  algorithm kSureShrink, kVisuShrink or kBrownianShrink; levels below 0 for as many as
    ///          the plane allows; wavelet 0 to 5. None is tested here.
    WaveletShrinkageOperator(int algorithm, int levels, int wavelet);
    ~WaveletShrinkageOperator() override;

    /// Shapes:  target w x h as the source, or null; source and target must not be one plane.
    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override;

    /// Writes "Real Gradient Operator", which is another operator's text.
    ///
    /// Quirk:   shared-gradient-name
    void printName(std::FILE* file) const override;

    /// apply() on the plane extended by mirroring, cropped to its size.
    ///
    /// The longer side is extended to a power of two and the shorter one to a multiple of 2 to
    /// the levels, half of it before the plane and half behind it as the transform's period
    /// has them. The levels are those that the plane allows before it is extended.
    ///
    /// Shapes:  the result is a new plane of the source's size.
    std::unique_ptr<RealImage> mirrored(const RealImage& source);

    /// power2 of wavelet_transform.h, and so on: the operations that the operator runs.
    int power2(int n) const;
    int floorLog2(int n) const;
    void FwtVector(const double* input, double* output, int length, int levels,
                   const WaveletFilter& low, const WaveletFilter& high) const;
    void IwtVector(const double* input, double* output, int length, int levels,
                   const WaveletFilter& low, const WaveletFilter& high) const;
    void FwtImage(const RealImage& source, RealImage& coefficients, int height, int width,
                  int levels, const WaveletFilter& low, const WaveletFilter& high) const;
    void IwtImage(const RealImage& coefficients, RealImage& target, int height, int width,
                  int levels, const WaveletFilter& low, const WaveletFilter& high) const;
    void BoundingBox(int height, int width, int level, int detail, int* xStart, int* xEnd,
                     int* yStart, int* yEnd) const;
    std::unique_ptr<RealImage> ExtractBand(const RealImage& coefficients, int height, int width,
                                           int level, int detail) const;
    double estimateNoise2D(const RealImage& coefficients, int height, int width) const;
    double sureThreshold(const double* values, int count) const;
    void SureShrink2D(RealImage& coefficients, int height, int width, int levels) const;
    void VisuShrink2D(RealImage& coefficients, int height, int width, int levels) const;
    void BrownianShrink2D(RealImage& coefficients, int height, int width, int levels,
                          float alpha) const;
    void ShrinkBand(RealImage& coefficients, int height, int width, int level, int detail,
                    double threshold) const;
    double brownianThreshold(RealImage& band, int bandHeight, int bandWidth,
                             double critical) const;
    void brownianSheet(RealImage& plane, int bandHeight, int bandWidth) const;
    int compareMagnitudes(const double* a, const double* b) const;

    /// Side of the square of zeros in which a plane stands whose longer side is `longer`: the
    /// next power of two above it, or `longer` itself when it is one and the plane is not padded.
    static int workingSide(int longer);
    /// Most levels that planes of a shorter side of `minSide` allow with this wavelet:
    /// floorLog2(minSide) - floorLog2(its longest filter). Below 1 none is possible.
    int levelLimit(int minSide) const;
    /// Levels asked for, and after apply() those of the last run.
    int levels() const { return levels_; }
    /// The level limit of the last run.
    int maxLevels() const { return maxLevels_; }
    /// Significance level of the Brownian rule, 0.5.
    float alpha() const { return alpha_; }
    /// Takes the noise as known; below 0, as at first, it is measured in each plane.
    ///
    /// Units:   grey levels.
    /// Domain:  not 0, which leaves the Sure and the Brownian rule without a scale.
    void setNoise(double noise) { noise_ = noise; }
    /// Whether noise, thresholds and counts are printed; nothing in the library sets it.
    int verbose() const { return verbose_; }
    /// Sets what verbose() gives.
    void setVerbose(int verbose) { verbose_ = verbose; }

  private:
    bool knownWavelet() const { return wavelet_ >= 0 && wavelet_ < kWaveletCount; }
    void limitLevels();
    bool runRule(CoefficientBands& bands) const;
    bool runRuleForTexts(const RealImage& source, int width, int height) const;
    std::unique_ptr<BandPyramid> shrunkBands(const RealImage& source, int width,
                                             int height) const;
    std::unique_ptr<RealImage> rebuilt(const BandPyramid& pyramid,
                                       std::unique_ptr<RealImage> target) const;

    int algorithm_;
    float alpha_ = 0.5f;
    int planeWidth_ = 0;
    int planeHeight_ = 0;
    int dimensions_ = 2;
    int levels_;
    int filterLength_ = 0;
    int maxLevels_ = 0;
    int minSide_ = 0;
    int verbose_ = 0;
    double noise_ = -1.0;
    int wavelet_;
    std::unique_ptr<WaveletFilter[]> analysisLow_;
    std::unique_ptr<WaveletFilter[]> analysisHigh_;
    std::unique_ptr<WaveletFilter[]> synthesisLow_;
    std::unique_ptr<WaveletFilter[]> synthesisHigh_;
};

}  // namespace orv
