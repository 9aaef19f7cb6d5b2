#include "methods/working_planes.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orv {

namespace {

constexpr std::array<Choice, 2> kColours{{
    {"rgb", RgbColours, "red, green and blue as they are"},
    {"opponent", OpponentColours, "brightness and two differences of colour; best for noise"},
}};

constexpr std::array<Choice, 2> kBorders{{
    {"still", StillBorder, "they hardly change, so a frame of noise stays"},
    {"mirror", MirroredBorder, "they are smoothed as all others, by mirroring"},
}};

// 1 / sqrt(6) and 1 / sqrt(18), and their inverses over 2 and 6.
constexpr float kRedBlue = 0.408248290f;
constexpr float kGreenMagenta = 0.235702260f;
constexpr float kRedBlueBack = 1.224744871f;
constexpr float kGreenMagentaBack = 0.707106781f;

/// The index within 0 to size - 1 that a mirrored line shows at `i`.
int mirroredIndex(int i, int size) {
    const int period = 2 * size;
    int within = i % period;
    if (within < 0) {
        within += period;
    }
    return within < size ? within : period - 1 - within;
}

}  // namespace

std::span<const Choice> workingColoursChoices() {
    return kColours;
}

std::span<const Choice> workingBorderChoices() {
    return kBorders;
}

void turnToOpponent(Planes& planes) {
    float* const first = planes[0]->data();
    float* const second = planes[1]->data();
    float* const third = planes[2]->data();
    const std::size_t count = planes[0]->sampleCount();
    for (std::size_t i = 0; i < count; ++i) {
        const float red = first[i];
        const float green = second[i];
        const float blue = third[i];
        first[i] = (red + green + blue) / 3.0f;
        second[i] = (red - blue) * kRedBlue;
        third[i] = (red - 2.0f * green + blue) * kGreenMagenta;
    }
}

void turnToRgb(Planes& planes) {
    float* const first = planes[0]->data();
    float* const second = planes[1]->data();
    float* const third = planes[2]->data();
    const std::size_t count = planes[0]->sampleCount();
    for (std::size_t i = 0; i < count; ++i) {
        const float brightness = first[i];
        const float redBlue = second[i] * kRedBlueBack;
        const float magenta = third[i] * kGreenMagentaBack;
        first[i] = brightness + redBlue + magenta;
        second[i] = brightness - 2.0f * magenta;
        third[i] = brightness - redBlue + magenta;
    }
}

std::unique_ptr<FloatImage> framed(const FloatImage& plane, int left, int top, int right,
                                   int bottom) {
    const int width = plane.width();
    const int height = plane.height();
    auto result = FloatImage::uninitialised(left + width + right, top + height + bottom);
    for (int x = 0; x < result->width(); ++x) {
        const float* const from = plane.row(mirroredIndex(x - left, width));
        float* const to = result->row(x);
        std::copy_n(from, static_cast<std::size_t>(height), to + top);
        for (int y = 0; y < top; ++y) {
            to[y] = from[mirroredIndex(y - top, height)];
        }
        for (int y = top + height; y < result->height(); ++y) {
            to[y] = from[mirroredIndex(y - top, height)];
        }
    }
    return result;
}

std::unique_ptr<FloatImage> cropped(const FloatImage& plane, int left, int top, int width,
                                    int height) {
    auto result = FloatImage::uninitialised(width, height);
    for (int x = 0; x < width; ++x) {
        std::copy_n(plane.row(left + x) + top, static_cast<std::size_t>(height),
                    result->row(x));
    }
    return result;
}

}  // namespace orv
