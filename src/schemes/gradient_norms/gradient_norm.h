#pragma once

#include <cstdio>
#include <memory>

#include "images/float_image.h"
#include "schemes/plane_operators/float_operator.h"

namespace orv {

/// A discretisation of the squared gradient norm |grad u|^2 of one plane.
///
/// The values come from the plane that setImage() was given. Interior samples, the four edges
/// and the four corners have operations of their own, as the neighbours that exist differ; a
/// direction in which the plane is one sample wide contributes 0.
///
/// Units:   squared grey levels per squared pixel; nothing takes the root.
class GradientNorm : public FloatOperator {
  public:
    /// Stores the plane, which must outlive the following calls.
    virtual void setImage(const FloatImage& plane);

    /// The squared norm at 0 < x < w-1, 0 < y < h-1.
    virtual double interiorNorm(int x, int y) const = 0;
    /// The squared norm at (x, 0), 0 < x < w-1.
    virtual double edgeY0Norm(int x) const = 0;
    /// The squared norm at (w-1, y), 0 < y < h-1.
    virtual double edgeXLastNorm(int y) const = 0;
    /// The squared norm at (x, h-1), 0 < x < w-1.
    virtual double edgeYLastNorm(int x) const = 0;
    /// The squared norm at (0, y), 0 < y < h-1.
    virtual double edgeX0Norm(int y) const = 0;
    /// The squared norm at (0, 0).
    virtual double cornerX0Y0Norm() const = 0;
    /// The squared norm at (w-1, 0).
    virtual double cornerXLastY0Norm() const = 0;
    /// The squared norm at (w-1, h-1).
    virtual double cornerXLastYLastNorm() const = 0;
    /// The squared norm at (0, h-1).
    virtual double cornerX0YLastNorm() const = 0;

    /// The squared norm of the plane of setImage() at every sample, rounded to float.
    ///
    /// Shapes:  `source` only serves to clone a missing target; the target has the size of the
    ///          plane of setImage().
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;

  protected:
    /// The sample (x, y) of the plane, widened.
    double sample(int x, int y) const { return image_->row(x)[y]; }
    /// Half the difference of the two neighbours in x.
    double centralX(int x, int y) const;
    /// Half the difference of the two neighbours in y.
    double centralY(int x, int y) const;
    /// The difference from the sample at the border column x to its neighbour inside; 0 when
    /// the plane has one column.
    double inwardX(int x, int y) const;
    /// The same across the border row y.
    double inwardY(int x, int y) const;

    int lastX_ = 0;
    int lastY_ = 0;
    const FloatImage* image_ = nullptr;
};

}  // namespace orv
