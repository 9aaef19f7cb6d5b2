#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>

#include "images/rgb_discrete_image.h"
#include "methods/method.h"
#include "support/plane_support.h"

namespace orv::test {

/// Planes of noise between `from` and `to`, each from a seed of its own: 0, 1, ...
inline Planes noisyPlanes(int width, int height, int count, double from = -0.5,
                          double to = 255.9) {
    Planes planes;
    for (int c = 0; c < count; ++c) {
        planes.push_back(noisePlane(width, height, static_cast<unsigned>(c), from, to).clone());
    }
    return planes;
}

/// Whole numbers from `from` to 255, as a picture of 8 bits has them.
inline Planes bytePlanes(int width, int height, int count, unsigned seed, double from = 0.0) {
    Planes planes;
    for (int c = 0; c < count; ++c) {
        planes.push_back(
            noisePlane(width, height, seed + static_cast<unsigned>(c), from).clone());
        for (std::size_t i = 0; i < planes.back()->sampleCount(); ++i) {
            planes.back()->data()[i] = std::floor(planes.back()->data()[i]);
        }
    }
    return planes;
}

/// The colour image of one or three planes.
inline std::unique_ptr<RgbDiscreteImage> imageOf(const Planes& planes) {
    auto image = std::make_unique<RgbDiscreteImage>(planes[0]->width(), planes[0]->height());
    for (int c = 0; c < 3; ++c) {
        image->setChannelFromFloat(*planes[static_cast<std::size_t>(c) % planes.size()], c + 1);
    }
    return image;
}

/// The method's arguments with `values` set; each has to be accepted.
inline Arguments argumentsOf(
    const Method& method, std::initializer_list<std::pair<const char*, const char*>> values) {
    Arguments arguments(method.parameters);
    for (const auto& [name, value] : values) {
        EXPECT_EQ(arguments.set(name, value), "");
    }
    return arguments;
}

}  // namespace orv::test
