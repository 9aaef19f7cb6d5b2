#pragma once

#include <cstdio>
#include <memory>
#include <vector>

#include "schemes/plane_operators/real_operator.h"

namespace orv {

class PyramidBuilder;
class RealImagePyramid;

/// How samples come into the Retinex and how they leave it: (sample + offset) scale goes
/// in, result x factor comes out.
struct SampleScaling {
    double offset = 0.0;
    double scale = 1.0;
    double factor = 1.0;
};

/// Variational Retinex: divides a picture by a power of its illumination.
///
/// With s the logarithm of the picture and l that of the illumination, l >= s, each pass takes
/// a projected step, coarse to fine over a pyramid:
///
///     G = Lap(l) + (l - s) alpha - (Lap(l) - Lap(s)) beta
///     mA = sum(G^2) / N      mB = -sum(G Lap(G)) / N
///     mu = min(|mA / (alpha mA + (beta + 1) mB)|, 0.2)
///     l = max(l + mu G, s)
///
/// and at the end
///
///     target = min(source / exp(l)^(1 - 1 / gamma), 1)
///
/// Level k of the pyramid gets 4 k passes and the picture itself none. l starts as the largest
/// s of the coarsest level. The published method steps along -G with G = -Lap(l)
/// + alpha (l - s) - beta Lap(l - s); the signs here are other ones on purpose, and the
/// constraint l >= s does most of the work.
///
/// Units:   samples above 0, white is 1.
/// Quirk:   retinex-signs, retinex-projection
/// Source:  [KimmelEladShakedKeshetSobel2003]
class VariationalRetinex : public RealOperator {
  public:
    /// Units:   alpha is the weight of the fit to the picture, beta of a smooth reflectance;
    ///          gamma 1 changes nothing, a larger one takes more of the illumination away.
    /// Domain:  gamma not 0, levels 1 to mostLevels(). Neither is tested here.
    VariationalRetinex(double gamma, double alpha, double beta, int levels);
    ~VariationalRetinex() override;

    /// Runs the method on one plane.
    ///
    /// Domain:  samples above 0: one of 0 has the logarithm minus infinity. A picture so flat
    ///          that G is 0 makes mu 0 / 0, and the projection then gives s.
    /// Fails:   null for levels that the plane doesn't allow; ends early, the target
    ///          unfinished, when the work is cancelled.
    /// Cost:    one logarithm, exponential and power a sample; the passes touch twice as many
    ///          samples as the plane has. The target holds the logarithm on the way; beside it
    ///          the work takes a plane's memory, which is kept for the next run.
    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override;

    /// `apply` between scalings, without a plane for the scaled samples.
    std::unique_ptr<RealImage> applyScaled(const RealImage& source,
                                           const SampleScaling& scaling,
                                           std::unique_ptr<RealImage> target);

    /// Writes "Real Variational Retinex\n".
    void printName(std::FILE* file) const override;

    /// The levels after which the shorter side would be empty; 0 for an empty plane.
    static int mostLevels(int width, int height);

  private:
    class WorkAccount;

    void prepare(const RealImage& source);
    void descend(WorkAccount& account);
    void improve(int k, WorkAccount& account);
    void divideByIllumination(const RealImage& source, const SampleScaling& scaling,
                              RealImage& target, WorkAccount& account) const;

    double gamma_;
    double alpha_;
    double beta_;
    int levels_;
    std::unique_ptr<PyramidBuilder> builder_;
    std::unique_ptr<RealImagePyramid> pyramid_;

    // Work of a run, kept for the next plane of its size.
    double brightest_ = 0.0;
    std::vector<std::unique_ptr<RealImage>> light_;  ///< l of each level but 0
    std::unique_ptr<RealImage> direction_;           ///< G of the level at work
};

}  // namespace orv
