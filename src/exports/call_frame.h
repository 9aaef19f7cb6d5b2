#pragma once

#define ORV_BUILDING_LIBRARY 1

#include <memory>

#include "images/discrete_image.h"
#include "images/rgb_discrete_image.h"
#include "orv/orv.h"

namespace orv {

/// The image behind a handle; null for null.
inline RgbDiscreteImage* imageOf(void* handle) {
    return static_cast<RgbDiscreteImage*>(handle);
}

/// Runs the body of an export that makes an image and hands the image out.
///
/// `run` gives a `std::unique_ptr` to an image, whose class is `RgbDiscreteImage` as that of
/// every clone and every source is.
///
/// Fails:   null when `run` gives null or throws, for want of memory too: nothing but a
///          handle or null gets out.
/// Owns:    the handle is the host's from here on.
template <typename Run>
void* callFrame(Run run) noexcept {
    try {
        std::unique_ptr<DiscreteImage> result = run();
        return static_cast<RgbDiscreteImage*>(result.release());
    } catch (...) {
        return nullptr;
    }
}

}  // namespace orv
