#include "images/plane_reader.h"

#include <array>
#include <cstddef>
#include <type_traits>

#include "images/discrete_image.h"
#include "images/float_image3.h"
#include "images/kernels/pixel_kernels.h"
#include "images/real_image3.h"

namespace orv {

namespace {

template <class Plane, class Read>
void readEach(Plane& plane, Read read) {
    for (int x = 0; x < plane.width(); ++x) {
        auto* const column = plane.row(x);
        for (int y = 0; y < plane.height(); ++y) {
            column[y] = static_cast<std::remove_reference_t<decltype(column[y])>>(read(x, y));
        }
    }
}

const RgbKernels<float>& kernelsOf(const FloatImage& /*plane*/) {
    return pixelKernels().rgbFloat;
}

const RgbKernels<double>& kernelsOf(const RealImage& /*plane*/) {
    return pixelKernels().rgbDouble;
}

std::size_t rowBytes(const DiscreteImage& image) {
    return std::size_t{3} * static_cast<std::size_t>(image.width());
}

template <class Plane>
std::size_t columnStride(const Plane& plane) {
    return static_cast<std::size_t>(plane.height());
}

template <class Plane>
void readValueInto(const DiscreteImage& image, Plane& plane) {
    if (const unsigned char* const pixels = image.packedRgb()) {
        kernelsOf(plane).readLuminance(pixels, rowBytes(image), plane.width(), plane.height(),
                                       plane.data(), columnStride(plane));
        return;
    }
    readEach(plane, [&](int x, int y) { return image.value(x, y); });
}

template <class Plane>
void readChannelInto(const DiscreteImage& image, int channel, Plane& plane) {
    if (channel < 1 || channel > 3) {
        if (image.packedRgb() != nullptr) {
            readValueInto(image, plane);
        } else {
            readEach(plane, [&](int x, int y) { return image.grey(x, y); });
        }
        return;
    }
    if (const unsigned char* const pixels = image.packedRgb()) {
        kernelsOf(plane).readChannel(pixels, rowBytes(image), plane.width(), plane.height(),
                                     channel - 1, plane.data(), columnStride(plane));
        return;
    }
    readEach(plane, [&](int x, int y) {
        return channel == 1 ? image.red(x, y)
                            : (channel == 2 ? image.green(x, y) : image.blue(x, y));
    });
}

template <class Planes>
void readThreeChannelsInto(const DiscreteImage& image, Planes& planes) {
    for (int i = 0; i < 3; ++i) {
        planes.plane(i).setChannel(i + 1);
    }
    if (const unsigned char* const pixels = image.packedRgb()) {
        const std::array targets = {planes.plane(0).data(), planes.plane(1).data(),
                                    planes.plane(2).data()};
        kernelsOf(planes.plane(0))
            .readRgb(pixels, rowBytes(image), planes.width(), planes.height(), targets.data(),
                     columnStride(planes));
        return;
    }
    for (int i = 0; i < 3; ++i) {
        readChannelInto(image, i + 1, planes.plane(i));
    }
}

}  // namespace

int imageWidth(const DiscreteImage& image) {
    return image.width();
}

int imageHeight(const DiscreteImage& image) {
    return image.height();
}

int imageChannels(const DiscreteImage& image) {
    return image.channels();
}

void readValue(const DiscreteImage& image, FloatImage& plane) {
    readValueInto(image, plane);
}

void readValue(const DiscreteImage& image, RealImage& plane) {
    readValueInto(image, plane);
}

void readChannel(const DiscreteImage& image, int channel, FloatImage& plane) {
    readChannelInto(image, channel, plane);
}

void readChannel(const DiscreteImage& image, int channel, RealImage& plane) {
    readChannelInto(image, channel, plane);
}

void readThreeChannels(const DiscreteImage& image, FloatImage3& planes) {
    readThreeChannelsInto(image, planes);
}

void readThreeChannels(const DiscreteImage& image, RealImage3& planes) {
    readThreeChannelsInto(image, planes);
}

}  // namespace orv
