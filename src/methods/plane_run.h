#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/float_image3.h"
#include "images/real_image.h"
#include "images/real_image3.h"
#include "methods/method.h"

namespace orv {

// What every method does around its operator: checking planes, keeping the engine's own text
// and the host's callback out, handing on progress, and clamping once at the end.

/// A result that is a reason in words.
MethodResult failure(std::string error);

/// Whether all samples are finite numbers.
bool allFinite(const Planes& planes);

/// What forbids a run on these planes, in words; empty when nothing does.
///
/// `what` names the picture in the text, such as "the picture" or "STYLE".
std::string planesRefusal(const Planes& planes, std::string_view what);

/// Keeps a host's callback out of a run and its range as it was.
class HostProgressPause {
  public:
    HostProgressPause();
    ~HostProgressPause();
    HostProgressPause(const HostProgressPause&) = delete;
    HostProgressPause& operator=(const HostProgressPause&) = delete;

  private:
    ProgressWindow saved_;
};

/// Hands the engine's account of work on to a progress function, one step after another.
class StepObserver : public WorkObserver {
  public:
    StepObserver(const Progress& progress, int steps) : progress_(progress), steps_(steps) {}

    bool onWork(double done) override;
    void nextStep() { ++step_; }

  private:
    const Progress& progress_;
    int steps_;
    int step_ = 0;
    double furthest_ = 0.0;
};

/// Three planes as one picture of floats; the planes move.
std::unique_ptr<FloatImage3> floatImage3Of(Planes planes);

/// The planes of a picture of floats, which loses them; empty for null.
Planes planesOf(std::unique_ptr<FloatImage3> image);

/// A plane of doubles with the samples of a plane of floats.
std::unique_ptr<RealImage> realImageOf(const FloatImage& plane);

/// A plane of floats with the samples of a plane of doubles, rounded to nearest.
std::unique_ptr<FloatImage> floatImageOf(const RealImage& plane);

/// Three planes as one picture of doubles; each float plane is freed as soon as it is copied.
std::unique_ptr<RealImage3> realImage3Of(Planes planes);

/// The planes of a picture of doubles, rounded to float; empty for null.
Planes planesOf(std::unique_ptr<RealImage3> image);

/// Runs `work` on planes as every method has to.
///
/// The engine's text is silenced, the C face's progress window is left as it was found, and
/// the result is clamped to 0 to 255.
///
/// Shapes:  1 or 3 planes of one size; `work` gives 1 or 3.
/// Fails:   with an error text: wrong planes, samples that aren't finite, before or after;
///          `cancelled` when the progress function asked to stop.
MethodResult runPlaneWork(Planes planes, const Progress& progress,
                          const std::function<Planes(Planes)>& work);

/// Runs an operator on planes of floats by its `runPlane`, or `runPlanes` for three.
template <class Operator>
MethodResult runFloatOperator(Planes planes, const Progress& progress, Operator& op) {
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        if (source.size() == 1) {
            source[0] = op.runPlane(*source[0]);
            return source;
        }
        const std::unique_ptr<FloatImage3> colour = floatImage3Of(std::move(source));
        return planesOf(op.runPlanes(*colour, nullptr));
    });
}

/// Runs an operator on planes of doubles by its `runPlane`, or `runPlanes` for three.
template <class Operator>
MethodResult runRealOperator(Planes planes, const Progress& progress, Operator& op) {
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        if (source.size() == 1) {
            source[0] = floatImageOf(*op.runPlane(*realImageOf(*source[0])));
            return source;
        }
        const std::unique_ptr<RealImage3> colour = realImage3Of(std::move(source));
        return planesOf(op.runPlanes(*colour, nullptr));
    });
}

}  // namespace orv
