#include "schemes/simple_anisotropic_operator.h"

#include <utility>

#include "base/rounding.h"
#include "base/text_output.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/float_image.h"
#include "schemes/flows/flow.h"
#include "schemes/plane_operators/progress_share.h"

namespace orv {

namespace {

/// Whether a plane can stand for a new one of the source's size.
bool canServe(const FloatImage* spare, const FloatImage& source) {
    return spare != nullptr && spare->width() == source.width() &&
           spare->height() == source.height() && spare->channel() == 0;
}

/// A plane like a clone of the source whose samples hold anything.
std::unique_ptr<FloatImage> blankInto(std::unique_ptr<FloatImage> spare,
                                      const FloatImage& source) {
    if (!canServe(spare.get(), source)) {
        spare = FloatImage::uninitialised(source.width(), source.height());
    }
    spare->setFlag(source.flag());
    return spare;
}

/// A clone of the source, in the memory of `spare` where nothing tells the two apart: touching
/// memory that is in use already is much cheaper than fresh pages.
std::unique_ptr<FloatImage> cloneInto(std::unique_ptr<FloatImage> spare,
                                      const FloatImage& source) {
    if (!canServe(spare.get(), source)) {
        return source.clone();
    }
    spare->copyFrom(source);
    spare->setFlag(source.flag());
    return spare;
}

}  // namespace

SimpleAnisotropicOperator::SimpleAnisotropicOperator(int iterations, int solverIterations,
                                                     double tau, Flow* flow, bool reservedFlag,
                                                     bool updateEachStep)
    : reservedFlag_(reservedFlag),
      iterations_(iterations),
      solverIterations_(solverIterations),
      tau_(toFloat(tau)),
      flow_(flow),
      updateEachStep_(updateEachStep) {
    dropsTarget_ = true;
}

SimpleAnisotropicOperator::~SimpleAnisotropicOperator() = default;

std::unique_ptr<FloatImage> SimpleAnisotropicOperator::apply(
    const FloatImage& source, std::unique_ptr<FloatImage> target) {
    target = stepFillsTarget_ && iterations_ > 0 ? blankInto(std::move(target), source)
                                                 : cloneInto(std::move(target), source);
    flow_->prepare(source);
    if (!updateEachStep_) {
        flow_->update(source);
    }
    if (iterations_ == 1) {
        return step(source, std::move(target));
    }
    return runSteps(source, std::move(target));
}

std::unique_ptr<FloatImage> SimpleAnisotropicOperator::runSteps(
    const FloatImage& source, std::unique_ptr<FloatImage> target) {
    work_ = cloneInto(std::move(work_), source);
    ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    for (int i = 1; i <= iterations_ && !workCancelled(); ++i) {
        // Onto the running values, so that the window climbs.
        // quirk: progress-time-loop
        window.progressLow =
            progressSum(window.progressLow, progressShare(width, i - 1, iterations_));
        window.progressHigh =
            progressSum(window.progressHigh, progressShare(width, i, iterations_));
        const WorkSlice slice(i - 1, iterations_);

        target = step(*work_, std::move(target));
        if (i < iterations_) {
            work_->assign(*target);
        }
        reportWork(1, 1);
    }
    return target;
}

void SimpleAnisotropicOperator::printName(std::FILE* file) const {
    printTextTo(file, "Simple Anisotropic Operator\n");
}

void SimpleAnisotropicOperator::setReservedStepPlane(const FloatImage* /*plane*/) {}

}  // namespace orv
