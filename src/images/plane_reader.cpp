#include "images/plane_reader.h"

#include "images/discrete_image.h"
#include "images/float_image3.h"
#include "images/real_image3.h"

namespace orv {

namespace {

template <class Plane, class Read>
void readEach(Plane& plane, Read read) {
    for (int x = 0; x < plane.width(); ++x) {
        auto* const column = plane.row(x);
        for (int y = 0; y < plane.height(); ++y) {
            column[y] = read(x, y);
        }
    }
}

template <class Plane>
void readValueInto(const DiscreteImage& image, Plane& plane) {
    readEach(plane, [&](int x, int y) { return static_cast<float>(image.value(x, y)); });
}

template <class Plane>
void readChannelInto(const DiscreteImage& image, int channel, Plane& plane) {
    switch (channel) {
        case 1:
            readEach(plane, [&](int x, int y) { return static_cast<float>(image.red(x, y)); });
            return;
        case 2:
            readEach(plane,
                     [&](int x, int y) { return static_cast<float>(image.green(x, y)); });
            return;
        case 3:
            readEach(plane, [&](int x, int y) { return static_cast<float>(image.blue(x, y)); });
            return;
        default:
            readEach(plane, [&](int x, int y) { return static_cast<float>(image.grey(x, y)); });
            return;
    }
}

template <class Planes>
void readThreeChannelsInto(const DiscreteImage& image, Planes& planes) {
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
