#pragma once

#include <cstdio>
#include <memory>

#include "algebra/matrix.h"
#include "schemes/full/full_2d_restoration.h"

namespace orv {

/// The semi-implicit step of the whole plane.
///
///     u_new = (I - tau A)^-1 u
///
/// Source:  [CatteLionsMorelColl1992]
class Full2DSemiImplicitRestoration final : public Full2DRestoration {
  public:
    using Full2DRestoration::Full2DRestoration;
    ~Full2DSemiImplicitRestoration() override;

    /// One step from source into target.
    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override;
    /// Writes "Full 2D Semi-Implicit restoration".
    void printName(std::FILE* file) const override;

  private:
    std::unique_ptr<Matrix> implicitMatrix_;
};

}  // namespace orv
