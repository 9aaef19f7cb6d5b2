#pragma once

#include <cstddef>

#include "base/aligned_block.h"
#include "images/float_image.h"
#include "schemes/kernels/line_kernels.h"

namespace orv {

class FidelityDiffusionFlow;
class Flow;

/// What the line kernels need of a flow: numbers in place of line vectors and matrices.
///
/// Owns:    nothing; valid as long as the flow is not updated.
struct LineFlow {
    const FloatImage* diffusivity = nullptr;
    const FloatImage* data = nullptr;  ///< the plane of the data term; null without one
    double dataWeight = 0.0;           ///< r of (u + r f) / (1 + r)
    double dataScale = 1.0;            ///< 1 / (1 + r)
    const FidelityDiffusionFlow* reducer = nullptr;  ///< shortens the step of the matrices

    /// The step of the matrices for a step `tau` of the scheme.
    float matrixStep(float tau) const;
};

/// Fills `lines` from a DiffusionFlow or a FidelityDiffusionFlow. False for any other class,
/// also for one derived from these: it may build other matrices.
bool describeLines(const Flow& flow, LineFlow& lines);

/// What happens to each line of a pass, in this order.
struct LineStage {
    int products = 0;          ///< multiplications by I + productStep M
    float productStep = 0.0f;  ///< step of the scheme, before the flow shortens it
    bool solve = true;         ///< whether (I - solveStep M) x = b is solved
    float solveStep = 0.0f;    ///< step of the scheme, before the flow shortens it
    bool average = false;      ///< store (result + target) / 2; only with `solve`
};

/// Told of each line of a strip, in order, before the strip is worked on.
class LineObserver {
  public:
    virtual ~LineObserver();
    /// Keeps the account of the work; false, which ends the pass, once it is cancelled.
    virtual bool beginLine(int line, int lines);
};

/// Passes of the line schemes and of the heat flow over whole planes, many lines at a time.
///
/// Every sample has the bits that flow, FTriDiagonalMatrix and ThomasSolver give line by line.
///
/// Owns:    the strips, kept between passes, planes and steps.
/// Cost:    memory for 5 strips of at most 128 lines.
class LinePasses {
  public:
    /// Works on the rows of `from` and writes those of `to`.
    ///
    /// Shapes:  all planes w x h; with products w at least 2, `to` not `from` and `stage` not
    ///          averaging without `solve`.
    void alongX(const LineFlow& flow, const LineStage& stage, const FloatImage& from,
                FloatImage& to, LineObserver& observer);
    /// The same for the columns.
    void alongY(const LineFlow& flow, const LineStage& stage, const FloatImage& from,
                FloatImage& to, LineObserver& observer);

    /// Solves all rows of `plane` in place with one factorisation.
    void solveRows(const LineFactors& factors, FloatImage& plane);
    /// Solves all columns of `plane` in place with one factorisation.
    void solveColumns(const LineFactors& factors, FloatImage& plane);

  private:
    struct Strip {
        int first;  // first line
        int count;  // lines of the plane in it
        int lanes;  // count, or the least width that holds it
    };

    float* strip(int number, const Strip& part, int length);
    ConstLines rowsOf(const FloatImage& plane, const Strip& part, int number);
    ConstLines rightRows(const LineFlow& flow, const FloatImage& from, const Strip& part);
    ConstLines rightColumns(const LineFlow& flow, const FloatImage& from, const Strip& part);
    ConstLines runStage(const LineStage& stage, const LineFlow& flow, LineSystems systems,
                        const Strip& part, ConstLines b, const Lines* x);

    static constexpr int kStrips = 6;
    AlignedBlock strips_[kStrips];
    const LineKernels* kernels_ = nullptr;
};

}  // namespace orv
