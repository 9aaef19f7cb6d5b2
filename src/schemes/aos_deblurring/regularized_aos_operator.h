#pragma once

#include <cstdio>
#include <memory>

#include "schemes/aos_deblurring/simple_aos_operator.h"
#include "schemes/kernels/line_passes.h"

namespace orv {

/// SimpleAosOperator with a data term: what the blur H does to a blurred picture is taken off.
///
///     b = U - (V - W) lambda tau,   U = f, V = H H f, W = H f
///
/// so that V - W stands for H (H u - f) at u = f. H is the separable smoothing of FloatImage by
/// the weights of `kernel`:
///
/// | kernel | weights |
/// |---|---|
/// | 2 | 1 2 9 2 1 |
/// | 5 | 1 3 4 3 1 |
/// | 7 | 1 3 5 6 5 3 1 |
/// | any other | 1 2 1 |
///
/// Only the last iteration sets the result: U never changes and each iteration overwrites the
/// target. What changes between them is V, which is smoothed twice more each time.
///
/// Source:  [RudinOsher1994]
class RegularizedAosOperator : public SimpleAosOperator {
  public:
    /// Domain:  `keepObserved` other than 0 takes W = f in place of H f.
    RegularizedAosOperator(int iterations, int kernel, double tau, double contrast,
                           double lambda, double sigma, unsigned char keepObserved,
                           unsigned char updateEachStep);
    ~RegularizedAosOperator() override;

    /// Runs the iterations, calls the host's callback as it goes and clamps to the value range.
    ///
    /// Reports are 0, 10, then in iteration i of n (90 i) / n + 10, (45 i y) / (n h) + (90 i) / n
    /// + 10 at each row y, (45 i x) / (n w) + (90 i) / n + (45 i) / n + 10 at each column x, and
    /// 100 at the end, each quotient truncated.
    ///
    /// Shapes:  target w x h as the source, or null, which makes a clone of the source.
    /// Domain:  w and h at least 6.
    /// Owns:    one or two work planes, kept for the next plane of the same size.
    /// Cost:    two smoothings, two more an iteration, two passes of line solves.
    /// Quirk:   float-assign, aos-last-super, aos-mirrored-ends, aos-progress-overshoot
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// Keeps the pointer; nothing reads it.
    void setGuide(const FloatImage& plane) override;
    /// Writes "Real Regularized Aos Operator\n".
    void printName(std::FILE* file) const override;

    /// The plane of the last setGuide, which may be gone; null before.
    const FloatImage* guide() const { return guide_; }

    /// For tests and benchmarks: works line by line even where kernels exist.
    void setPlainPath(bool plain) { plainPath_ = plain; }

  protected:
    /// Whether every diffusivity of a run is exactly 1, so that all lines of a sweep share one
    /// factorisation and what `prepare` computes need not be computed. A class that tells so
    /// must not be derived from without overriding this.
    virtual bool isUniform() const;

    unsigned char keepObserved_;
    int kernel_;
    float lambda_;
    const FloatImage* guide_ = nullptr;

  private:
    struct DataPlanes;

    void smooth(FloatImage& plane) const;
    DataPlanes makeDataPlanes(const FloatImage& source);
    FloatImage& workPlane(std::unique_ptr<FloatImage>& plane) const;
    void prepareDiffusivity(bool byKernels, const FloatImage& plane);
    void reportRow(int i, int y) const;
    void reportColumn(int i, int x) const;
    bool sweepRows(int i, const DataPlanes& data, FloatImage& target);
    bool sweepColumns(int i, const DataPlanes& data, FloatImage& target);
    bool sweepByKernels(int i, const DataPlanes& data, FloatImage& target);
    void addColumns(const DataPlanes& data, FloatImage& target);
    void factoriseUniform(ThomasLinearSystem& system, int n) const;
    bool runIteration(int i, bool byKernels, const DataPlanes& data, FloatImage& target);

    bool plainPath_ = false;
    LinePasses passes_;
    std::unique_ptr<FloatImage> workV_;
    std::unique_ptr<FloatImage> workW_;
};

}  // namespace orv
