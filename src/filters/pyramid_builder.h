#pragma once

#include <memory>

#include "filters/plane_pyramid_builder.h"

namespace orv {

/// Builds a pyramid by smoothing each level with binomial weights and taking every other sample.
///
///     q(x, y) = (4 P(x, y) + 2 (P(x, y+1) + P(x, y-1) + P(x+1, y) + P(x-1, y))
///                + P(x+1, y+1) + P(x-1, y+1) + P(x+1, y-1) + P(x-1, y-1)) / 16
///     level k at (i, j) = q(2 i, 2 j),  P level k - 1
///
/// On an edge the same weights go over the neighbours that exist, with 1/12, and in a corner
/// with 1/9. A level has half the width and height of the one before, truncated, so that the
/// last column and row of a level are never a centre and q is computed where it is taken alone.
class PyramidBuilder : public PlanePyramidBuilder {
  public:
    explicit PyramidBuilder(int levels);
    ~PyramidBuilder() override;

    /// Level 0 becomes a copy of `plane`, the further levels its reductions.
    ///
    /// Shapes:  a pyramid of another size or count of levels is replaced, a level that is missing
    ///          made.
    /// Domain:  levels that leave the coarsest plane at least one sample; an empty level stays
    ///          empty.
    /// Cost:    one pass over each level but the last.
    std::unique_ptr<RealImagePyramid> build(const RealImage& plane,
                                            std::unique_ptr<RealImagePyramid> pyramid) override;

    /// `build` with the plane itself as level 0, which saves a copy.
    std::unique_ptr<RealImagePyramid> buildFrom(std::unique_ptr<RealImage> plane,
                                                std::unique_ptr<RealImagePyramid> pyramid);

    /// Whether `pyramid`, which may be null, has the form that a plane of this size needs.
    bool fits(const RealImagePyramid* pyramid, int width, int height) const;

    /// Factor from one level to the next.
    double ratio() const { return ratio_; }
    /// Number of levels, level 0 among them.
    int levels() const { return levels_; }
    /// A number that nothing reads.
    int reserved() const { return reserved_; }

  private:
    double ratio_ = 0.5;
    int levels_;
    int reserved_ = 1;
};

}  // namespace orv
