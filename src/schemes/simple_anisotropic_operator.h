#pragma once

#include <cstdio>
#include <memory>

#include "schemes/plane_operators/float_operator.h"

namespace orv {

class Flow;

/// The time loop that all diffusion schemes share; a scheme supplies the step.
class SimpleAnisotropicOperator : public FloatOperator {
  public:
    /// `iterations` steps of `tau`. `updateEachStep` set: the scheme's step recomputes the
    /// diffusivity; clear: `apply` computes it once. `reservedFlag` is stored and never read.
    ///
    /// Units:   tau in units of the scheme's time, with a grid distance of one pixel.
    /// Owns:    nothing; `flow` has to outlive this object.
    SimpleAnisotropicOperator(int iterations, int solverIterations, double tau, Flow* flow,
                              bool reservedFlag, bool updateEachStep);
    ~SimpleAnisotropicOperator() override;

    /// Runs all time steps on one plane.
    ///
    /// The steps write into a clone of the source; where `stepFillsTarget_` tells that they
    /// write every sample, the clone's samples are not copied. Between steps the work plane
    /// gets `FloatImage::assign`, which is empty, so every step reads the source.
    /// With d = progressHigh - progressLow on entry and more than one iteration, step i adds
    /// (i - 1) d / iterations to the lower and i d / iterations to the upper end of the
    /// window, each onto the running value.
    ///
    /// Shapes:  target of any size, or null; one that comes in is consumed: what it holds is
    ///          lost, its memory may serve the result.
    /// Fails:   never; 0 iterations or less give a clone of the source, with the flow prepared.
    ///          Ends early when the work is cancelled; the samples then mean nothing.
    /// Cost:    the steps, one copy of the plane unless they fill it, one more with any number
    ///          of iterations but one.
    /// Quirk:   float-assign, progress-time-loop
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;

    /// Writes "Simple Anisotropic Operator\n".
    void printName(std::FILE* file) const override;

    /// Reserved hook that does nothing in every class.
    virtual void setReservedStepPlane(const FloatImage* plane);

    /// One time step from source into target; returns the target.
    ///
    /// Shapes:  both w x h, target not null, not one plane.
    virtual std::unique_ptr<FloatImage> step(const FloatImage& source,
                                             std::unique_ptr<FloatImage> target) = 0;

  protected:
    bool reservedFlag_;
    double tolerance_ = 0.0001;
    int iterations_;
    int solverIterations_;
    float tau_;
    Flow* flow_;
    bool updateEachStep_;
    /// Set by classes whose step writes every sample of the target before it reads it: the
    /// target then comes to the first step without the samples of the source.
    bool stepFillsTarget_ = false;

  private:
    std::unique_ptr<FloatImage> runSteps(const FloatImage& source,
                                         std::unique_ptr<FloatImage> target);

    std::unique_ptr<FloatImage> work_;
};

}  // namespace orv
