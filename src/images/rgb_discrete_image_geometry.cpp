#include <algorithm>
#include <cstddef>
#include <cstring>

#include "base/rounding.h"
#include "images/rgb_discrete_image.h"

namespace orv {

namespace {

// What every geometric operation moves: the three bytes of a pixel.
void movePixel(unsigned char* to, const unsigned char* from) {
    std::memcpy(to, from, 3);
}

}  // namespace

template <class Source>
std::unique_ptr<DiscreteImage> RgbDiscreteImage::gathered(int width, int height,
                                                          Source source) const {
    auto result = std::make_unique<RgbDiscreteImage>(Uninitialised(), width, height);
    for (int y = 0; y < result->height(); ++y) {
        for (int x = 0; x < result->width(); ++x) {
            movePixel(result->pixel(x, y), source(x, y));
        }
    }
    return result;
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::decimated(int n) const {
    return gathered(width() / n, height() / n,
                    [&](int x, int y) { return pixel(x * n, y * n); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::interleavedZoom(int n, int r, int g,
                                                                 int b) const {
    const unsigned char rest[3] = {toLowByte(r), toLowByte(g), toLowByte(b)};
    return gathered(width() * n, height() * n, [&](int x, int y) -> const unsigned char* {
        return x % n == 0 && y % n == 0 ? pixel(x / n, y / n) : rest;
    });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::replicatedZoom(int n) const {
    return gathered(width() * n, height() * n,
                    [&](int x, int y) { return pixel(x / n, y / n); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::doubled() const {
    auto result = std::make_unique<RgbDiscreteImage>(2 * width() - 1, 2 * height() - 1);
    for (int y = 0; y < height(); ++y) {
        for (int x = 0; x < width(); ++x) {
            movePixel(result->pixel(2 * x, 2 * y), pixel(x, y));
        }
    }
    return result;
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::mirroredX() const {
    return gathered(width(), height(), [&](int x, int y) { return pixel(width() - 1 - x, y); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::mirroredY() const {
    return gathered(width(), height(),
                    [&](int x, int y) { return pixel(x, height() - 1 - y); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::rotatedCcw() const {
    return gathered(height(), width(), [&](int x, int y) { return pixel(width() - 1 - y, x); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::rotatedCw() const {
    return gathered(height(), width(),
                    [&](int x, int y) { return pixel(y, height() - 1 - x); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::rotated180() const {
    return gathered(width(), height(),
                    [&](int x, int y) { return pixel(width() - 1 - x, height() - 1 - y); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::subImage(int x, int y, int w, int h) const {
    w = std::min(w, width() - x);
    h = std::min(h, height() - y);
    if (w == 0 || h == 0) {
        return nullptr;
    }
    return gathered(w, h, [&](int i, int j) { return pixel(x + i, y + j); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::subImageCorners(int x0, int y0, int x1,
                                                                 int y1) const {
    auto result =
        gathered(x1 - x0 + 1, y1 - y0 + 1, [&](int i, int j) { return pixel(x0 + i, y0 + j); });
    result->setOrigin(x0, y0);
    return result;
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::thumbnail(int n) const {
    const int stepX = std::max(width() / n, 1);
    const int stepY = std::max(height() / n, 1);
    return gathered(std::min(n, width()), std::min(n, height()),
                    [&](int i, int j) { return pixel(i * stepX, j * stepY); });
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::resized(double fx, double fy) const {
    return gathered(toInt(width() * fx), toInt(height() * fy),
                    [&](int i, int j) { return pixel(toInt(i / fx), toInt(j / fy)); });
}

}  // namespace orv
