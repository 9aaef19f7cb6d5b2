#pragma once

#include <memory>

namespace orv {

class RealImage;
class RealImagePyramid;

/// What fills a pyramid from a plane.
class PlanePyramidBuilder {
  public:
    PlanePyramidBuilder() = default;
    PlanePyramidBuilder(const PlanePyramidBuilder&) = delete;
    PlanePyramidBuilder& operator=(const PlanePyramidBuilder&) = delete;
    virtual ~PlanePyramidBuilder() = default;

    /// Fills `pyramid` from `plane`; a null pyramid is made.
    virtual std::unique_ptr<RealImagePyramid> build(
        const RealImage& plane, std::unique_ptr<RealImagePyramid> pyramid) = 0;
};

}  // namespace orv
