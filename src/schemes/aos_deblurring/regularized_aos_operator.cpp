#include "schemes/aos_deblurring/regularized_aos_operator.h"

#include <algorithm>
#include <utility>

#include "base/rounding.h"
#include "base/text_output.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "schemes/aos_deblurring/aos_line.h"
#include "schemes/kernels/deblur_kernels.h"

namespace orv {

namespace {

constexpr int kBlockColumns = 64;

LineFactors factorsOf(ThomasLinearSystem& system) {
    return {system.multipliers().data(), system.pivots().data(), system.matrix().upper().data(),
            system.rows()};
}

/// Calls move(from, to) for what the mirrored rows of a line read, a sample or a whole column.
template <class Move>
void mirrorEnds(int n, Move move) {
    // What another place reads is moved before it is overwritten, also on lines of 6.
    for (const int x : {0, 1, n - 1, n - 2}) {
        move(/*from=*/aosLineIndex(x, n), /*to=*/x);
    }
}

}  // namespace

/// The planes of the right side. U is the source: no iteration changes it.
struct RegularizedAosOperator::DataPlanes {
    const FloatImage& u;
    FloatImage& v;
    const FloatImage& w;
    float lambda;
    float tau;

    float rightSide(int x, int y) const {
        const float u0 = u.row(x)[y];
        return u0 - (v.row(x)[y] - w.row(x)[y]) * lambda * tau;
    }
};

RegularizedAosOperator::RegularizedAosOperator(int iterations, int kernel, double tau,
                                               double contrast, double lambda, double sigma,
                                               unsigned char keepObserved,
                                               unsigned char updateEachStep)
    : SimpleAosOperator(iterations, tau, contrast, sigma, /*reservedFlag=*/0, updateEachStep),
      keepObserved_(keepObserved),
      kernel_(kernel),
      lambda_(toFloat(lambda)) {
    // Each iteration writes every sample of the target.
    dropsTarget_ = iterations > 0;
}

RegularizedAosOperator::~RegularizedAosOperator() = default;

std::unique_ptr<FloatImage> RegularizedAosOperator::apply(const FloatImage& source,
                                                          std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    width_ = source.width();
    height_ = source.height();
    reportProgress(0);
    const DataPlanes data = makeDataPlanes(source);
    reportProgress(10);
    makeSystems();
    const bool byKernels = !plainPath_ && isUniform();
    if (updateEachStep_ == 0) {
        prepareDiffusivity(byKernels, data.u);
    }
    bool going = reportWork(1, iterations_ + 1);
    for (int i = 0; i < iterations_ && going; ++i) {
        going = runIteration(i, byKernels, data, *target) && reportWork(i + 2, iterations_ + 1);
    }
    reportProgress(100);
    // The last sweep of the kernels clamps what it adds.
    if (!byKernels || iterations_ <= 0) {
        target->clamp(lower_, upper_);
    }
    releaseWork();
    return target;
}

// Of what `prepare` makes the blur alone outlives a run, and the kernels need none of it.
void RegularizedAosOperator::prepareDiffusivity(bool byKernels, const FloatImage& plane) {
    if (byKernels) {
        makeBlur();
    } else {
        prepare(plane);
    }
}

bool RegularizedAosOperator::runIteration(int i, bool byKernels, const DataPlanes& data,
                                          FloatImage& target) {
    reportProgress(aosProgressPart(90, i, iterations_) + 10);
    if (updateEachStep_ == 1) {
        prepareDiffusivity(byKernels, data.u);
    }
    const bool going = byKernels ? sweepByKernels(i, data, target)
                                 : sweepRows(i, data, target) && sweepColumns(i, data, target);
    if (i < iterations_ - 1 && going) {
        // The target would be assigned to U here, and U to V, by the empty FloatImage::assign.
        smooth(data.v);
        smooth(data.v);
    }
    return going;
}

void RegularizedAosOperator::setGuide(const FloatImage& plane) {
    guide_ = &plane;
}

void RegularizedAosOperator::printName(std::FILE* file) const {
    printTextTo(file, "Real Regularized Aos Operator\n");
}

bool RegularizedAosOperator::isUniform() const {
    return false;
}

void RegularizedAosOperator::smooth(FloatImage& plane) const {
    switch (kernel_) {
        case 2:
            return plane.smooth5(1, 2, 9, 2, 1);
        case 5:
            return plane.smooth5(1, 3, 4, 3, 1);
        case 7:
            return plane.smooth7(1, 3, 5, 6, 5, 3, 1);
        default:
            return plane.smooth3(1, 2, 1);
    }
}

// V passes through W on its way, which saves a smoothing.
RegularizedAosOperator::DataPlanes RegularizedAosOperator::makeDataPlanes(
    const FloatImage& source) {
    FloatImage& v = workPlane(workV_);
    v.copyFrom(source);
    smooth(v);
    const FloatImage* w = &source;
    if (keepObserved_ == 0) {
        workPlane(workW_).copyFrom(v);
        w = workW_.get();
    }
    smooth(v);
    return {source, v, *w, lambda_, tau_};
}

// Fresh memory is dear: a run over three channels keeps its planes.
FloatImage& RegularizedAosOperator::workPlane(std::unique_ptr<FloatImage>& plane) const {
    if (plane == nullptr || plane->width() != width_ || plane->height() != height_) {
        plane = nullptr;
        plane = FloatImage::uninitialised(width_, height_);
    }
    return *plane;
}

void RegularizedAosOperator::reportRow(int i, int y) const {
    // quirk: aos-progress-overshoot
    reportProgress(aosProgressPart(45, i, iterations_, y, height_) +
                   aosProgressPart(90, i, iterations_) + 10);
}

void RegularizedAosOperator::reportColumn(int i, int x) const {
    reportProgress(aosProgressPart(45, i, iterations_, x, width_) +
                   aosProgressPart(90, i, iterations_) + aosProgressPart(45, i, iterations_) +
                   10);
}

bool RegularizedAosOperator::sweepRows(int i, const DataPlanes& data, FloatImage& target) {
    const float s = lineStep();
    AosLineVectors vectors(width_);
    for (int y = 0; y < height_ && !workCancelled(); ++y) {
        reportRow(i, y);
        solveAosLine(
            *systemX_, vectors, width_, s, dimensions_,
            [&](int j) { return diffusivity(j, y); },
            [&](int j) { return data.rightSide(j, y); });
        const float* const solution = systemX_->x().data();
        for (int x = 0; x < width_; ++x) {
            target.row(x)[y] = solution[x];
        }
    }
    return !workCancelled();
}

bool RegularizedAosOperator::sweepColumns(int i, const DataPlanes& data, FloatImage& target) {
    const float s = lineStep();
    AosLineVectors vectors(height_);
    for (int x = 0; x < width_ && !workCancelled(); ++x) {
        reportColumn(i, x);
        solveAosLine(
            *systemY_, vectors, height_, s, dimensions_,
            [&](int j) { return diffusivity(x, j); },
            [&](int j) { return data.rightSide(x, j); });
        const float* const solution = systemY_->x().data();
        float* const out = target.row(x);
        for (int y = 0; y < height_; ++y) {
            out[y] = out[y] + solution[y];
        }
    }
    return !workCancelled();
}

// Both sweeps with one factorisation each. Iterations before the last one are told to the host
// and not computed: the last one overwrites them.
bool RegularizedAosOperator::sweepByKernels(int i, const DataPlanes& data, FloatImage& target) {
    for (int y = 0; y < height_; ++y) {
        reportRow(i, y);
    }
    const bool last = i == iterations_ - 1;
    if (last) {
        factoriseUniform(*systemX_, width_);
        deblurKernels().rightSide({data.u.data(), data.v.data(), data.w.data()}, lambda_, tau_,
                                  target.sampleCount(), target.data());
        mirrorEnds(width_, [&](int from, int to) {
            std::copy_n(target.row(from), height_, target.row(to));
        });
        passes_.solveRows(factorsOf(*systemX_), target);
    }
    for (int x = 0; x < width_; ++x) {
        reportColumn(i, x);
    }
    if (last && !workCancelled()) {
        addColumns(data, target);
    }
    return !workCancelled();
}

// Blocks of columns that stay in the cache from the right side to the sum.
void RegularizedAosOperator::addColumns(const DataPlanes& data, FloatImage& target) {
    factoriseUniform(*systemY_, height_);
    const LineFactors factors = factorsOf(*systemY_);
    const DeblurKernels& kernels = deblurKernels();
    FloatImage block(kBlockColumns, height_);
    for (int first = 0; first < width_; first += kBlockColumns) {
        const int columns = std::min(kBlockColumns, width_ - first);
        const std::size_t count =
            static_cast<std::size_t>(columns) * static_cast<std::size_t>(height_);
        kernels.rightSide({data.u.row(first), data.v.row(first), data.w.row(first)}, lambda_,
                          tau_, count, block.data());
        for (int x = 0; x < columns; ++x) {
            float* const line = block.row(x);
            mirrorEnds(height_, [&](int from, int to) { line[to] = line[from]; });
        }
        passes_.solveColumns(factors, block);
        kernels.addAndClamp(block.data(), lower_, upper_, count, target.row(first));
    }
}

void RegularizedAosOperator::factoriseUniform(ThomasLinearSystem& system, int n) const {
    AosLineVectors vectors(n);
    solveAosLine(
        system, vectors, n, lineStep(), dimensions_, [](int /*j*/) { return 1.0f; },
        [](int /*j*/) { return 0.0f; });
}

}  // namespace orv
