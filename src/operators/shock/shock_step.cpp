#include "operators/shock/shock_step.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "exports/work_window.h"

namespace orv {

namespace {

double limited(double v) {
    if (v < 0.0) {
        return 0.0;
    }
    return v > 255.0 ? 255.0 : v;
}

/// One step by the term's own operation.
void stepByTerm(const ShockTerm& term, double timeStep, const RealImage& work,
                RealImage& target) {
    const int width = work.width();
    for (int x = 1; x < width - 1 && reportLine(x, width); ++x) {
        double* const column = target.row(x);
        for (int y = 1; y < work.height() - 1; ++y) {
            column[y] = limited(column[y] + timeStep * term.value(work, x, y));
        }
    }
}

/// Steps by the kernels, with two columns of old samples in place of a work plane.
class KernelSteps {
  public:
    KernelSteps(double timeStep, int height)
        : timeStep_(timeStep),
          count_(height - 2),
          first_(static_cast<std::size_t>(height)),
          second_(static_cast<std::size_t>(height)) {}

    /// Speeds from `work`, another plane than the target.
    void stepFrom(const ShockFormula& formula, const RealImage& work, RealImage& target) {
        const int width = work.width();
        for (int x = 1; x < width - 1 && reportLine(x, width); ++x) {
            double* const column = target.row(x);
            std::copy_n(column, first_.size(), first_.data());
            run(formula, work.row(x - 1), work.row(x), work.row(x + 1), first_.data(), column);
        }
    }

    /// Speeds from the target itself as it was before the step.
    void stepInPlace(const ShockFormula& formula, RealImage& target) {
        const int width = target.width();
        std::copy_n(target.row(0), first_.size(), first_.data());
        for (int x = 1; x < width - 1 && reportLine(x, width); ++x) {
            double* const column = target.row(x);
            std::copy_n(column, second_.size(), second_.data());
            run(formula, first_.data(), second_.data(), target.row(x + 1), second_.data(),
                column);
            first_.swap(second_);
        }
    }

  private:
    void run(const ShockFormula& formula, const double* west, const double* here,
             const double* east, const double* in, double* out) const {
        kernels_.columns[static_cast<int>(formula.kind)]({west + 1, here + 1, east + 1}, in + 1,
                                                         count_, formula, timeStep_, out + 1);
    }

    const ShockKernels& kernels_ = shockKernels();
    double timeStep_;
    int count_;
    std::vector<double> first_;
    std::vector<double> second_;
};

}  // namespace

void runShock(const ShockMotion& motion, const RealImage& source, RealImage& target) {
    if (source.width() < 3 || source.height() < 3) {
        return;
    }
    KernelSteps kernels(motion.timeStep, source.height());
    std::unique_ptr<RealImage> work;
    for (int i = 1; i <= motion.iterations && !workCancelled(); ++i) {
        const WorkSlice slice(i - 1, motion.iterations);
        if (motion.numbersSteps) {
            motion.term.setIteration(i);
        }
        const ShockFormula formula = motion.term.formula();
        if (formula.kind == ShockKind::Other || motion.term.limiter() != nullptr) {
            // From the second step on the speeds come from the target as it was.
            if (i > 1) {
                work = work == nullptr ? target.clone() : std::move(work);
                work->assign(target);
            }
            stepByTerm(motion.term, motion.timeStep, i > 1 ? *work : source, target);
        } else if (i == 1) {
            kernels.stepFrom(formula, source, target);
        } else {
            kernels.stepInPlace(formula, target);
        }
    }
}

void runShockRegion(const ShockMotion& motion, const DiscreteImage& mask, int count,
                    const int* xs, const int* ys, RealImage& work, RealImage& target) {
    for (int i = 1; i <= motion.iterations && !workCancelled(); ++i) {
        const WorkSlice slice(i - 1, motion.iterations);
        // quirk: masked-shock-softness
        for (int k = 0; k < count; ++k) {
            double& sample = target.row(xs[k])[ys[k]];
            sample = limited(sample + motion.timeStep *
                                          motion.term.valueMasked(mask, work, xs[k], ys[k]));
        }
        work.copyRegion(target, count, xs, ys);
        reportWork(1, 1);
    }
}

}  // namespace orv
