#pragma once

#include <cstdio>
#include <memory>

#include "images/float_image.h"
#include "schemes/plane_operators/float_operator.h"

namespace orv {

/// Recursive Gaussian blur of a plane of floats, its cost independent of the blur width.
///
///     f(i) = B s(i) + (b1/b0) f(i - 1) + (b2/b0) f(i - 2) + (b3/b0) f(i - 3)   i upwards
///     g(i) = B f(i) + (b1/b0) g(i + 1) + (b2/b0) g(i + 2) + (b3/b0) g(i + 3)   i downwards
///
/// along x, then along y. A line starts with the reflected samples f(-1) = s(0), f(-2) = s(1),
/// f(-3) = s(2) and turns around with g(n) = f(n - 1), g(n + 1) = f(n - 2), g(n + 2) = f(n - 3).
/// Coefficients and samples are floats and every operation is rounded: it is part of the result
/// that a wide blur does not keep the mean grey level.
///
/// Quirk:   blur-line-start
/// Source:  [YoungVanVliet1995], [VanVlietYoungVerbeek1998]
class FloatRecursive2dBlurOperator : public FloatOperator {
  public:
    /// Finds the coefficients and writes them to the standard output in three lines.
    ///
    /// Units:   pixels; below 0.5 counts as 0.5.
    explicit FloatRecursive2dBlurOperator(double sigma);
    ~FloatRecursive2dBlurOperator() override;

    /// Blurs the source.
    ///
    /// Shapes:  source w x h, both at least 3: a line starts with its third sample; target of
    ///          that size, or null. Every sample of the target is written.
    /// Fails:   never; ends early, with the samples so far, when the work is cancelled.
    /// Cost:    14 floating-point operations a sample and axis; a strip of at most 64 columns.
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// Writes "Float Recursive 2d Blur Operator\n".
    void printName(std::FILE* file) const override;

    /// Clamps and stores sigma; gives the internal scale q.
    virtual double computeQ(double sigma);
    /// Fills the denominators, the gain and the quotients from q.
    virtual void computeCoefficients();

    /// `apply` with the plane as source and target at once: the same result in less memory.
    void blurInPlace(FloatImage& plane);

    /// The blur width after clamping, pixels.
    double sigma() const { return sigma_; }
    /// The internal scale.
    double q() const { return q_; }
    /// The denominators of the recursion.
    double b0() const { return b0_; }
    double b1() const { return b1_; }
    double b2() const { return b2_; }
    double b3() const { return b3_; }
    /// Gain of the input sample.
    float B() const { return B_; }
    /// The feedback coefficients.
    float b1OverB0() const { return b1OverB0_; }
    float b2OverB0() const { return b2OverB0_; }
    float b3OverB0() const { return b3OverB0_; }

  private:
    double sigma_;
    double q_ = 0.0;
    double b0_ = 0.0;
    double b1_ = 0.0;
    double b2_ = 0.0;
    double b3_ = 0.0;
    float B_ = 0;
    float b1OverB0_ = 0;
    float b2OverB0_ = 0;
    float b3OverB0_ = 0;
};

}  // namespace orv
