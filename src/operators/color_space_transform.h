#pragma once

#include <memory>

#include "images/real_image3.h"

namespace orv {

/// A mapping of three planes into another colour space and back.
///
/// Shapes:  planes and target of one size; a target that is null is made as a clone of the
///          planes.
class ColorSpaceTransform {
  public:
    virtual ~ColorSpaceTransform();

    /// The planes in the other colour space.
    virtual std::unique_ptr<RealImage3> forward(const RealImage3& planes,
                                                std::unique_ptr<RealImage3> target) const = 0;

    /// The planes back from the other colour space.
    virtual std::unique_ptr<RealImage3> inverse(const RealImage3& planes,
                                                std::unique_ptr<RealImage3> target) const = 0;

    /// A hook that does nothing.
    virtual void hook();
};

}  // namespace orv
