#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "exports/progress_window.h"
#include "images/float_image.h"
#include "images/float_image3.h"
#include "images/real_image.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "schemes/plane_operators/float_operator.h"
#include "schemes/plane_operators/real_operator.h"

namespace orv::test {

/// What the window and the hooks looked like at one `apply`.
struct Call {
    int low;
    int high;
    const void* source;
    const void* guide;
    bool masked;
};

/// target = source + 1, noting each call.
class AddOneFloat : public FloatOperator {
  public:
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override {
        note(source, false);
        target = target ? std::move(target) : source.clone();
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            target->data()[i] = source.data()[i] + 1.0F;
        }
        return target;
    }
    std::unique_ptr<FloatImage> applyMasked(const DiscreteImage& mask, const FloatImage& source,
                                            std::unique_ptr<FloatImage> target) override {
        lastMask = &mask;
        target = FloatOperator::applyMasked(mask, source, std::move(target));
        calls.back().masked = true;
        return target;
    }
    void setGuide(const FloatImage& plane) override { guide_ = &plane; }
    void note(const FloatImage& source, bool masked) {
        const ProgressWindow& window = progressWindow();
        calls.push_back({window.progressLow, window.progressHigh, &source, guide_, masked});
    }
    float lower() const { return lower_; }
    float upper() const { return upper_; }

    std::vector<Call> calls;
    const DiscreteImage* lastMask = nullptr;

  private:
    const FloatImage* guide_ = nullptr;
};

/// target = source + 1, noting each call.
class AddOneReal : public RealOperator {
  public:
    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override {
        const ProgressWindow& window = progressWindow();
        calls.push_back({window.progressLow, window.progressHigh, &source, guide_, false});
        target = target ? std::move(target) : source.clone();
        for (int x = 0; x < source.width(); ++x) {
            for (int y = 0; y < source.height(); ++y) {
                target->row(x)[y] = source.row(x)[y] + 1.0;
            }
        }
        return target;
    }
    std::unique_ptr<RealImage> applyMasked(const DiscreteImage& mask, const RealImage& source,
                                           std::unique_ptr<RealImage> target) override {
        lastMask = &mask;
        target = RealOperator::applyMasked(mask, source, std::move(target));
        calls.back().masked = true;
        return target;
    }
    void setGuide(const RealImage& plane) override { guide_ = &plane; }
    double lower() const { return lower_; }
    double upper() const { return upper_; }

    std::vector<Call> calls;
    const DiscreteImage* lastMask = nullptr;

  private:
    const RealImage* guide_ = nullptr;
};

/// Whether every sample is `value`.
template <class Plane>
bool isFlat(const Plane& plane, double value) {
    for (int x = 0; x < plane.width(); ++x) {
        for (int y = 0; y < plane.height(); ++y) {
            if (static_cast<double>(plane.row(x)[y]) != value) {
                return false;
            }
        }
    }
    return true;
}

/// Three planes of the values base, base + 100 and base + 200.
template <class Planes>
std::unique_ptr<Planes> steppedPlanes(int width, int height, int base) {
    auto planes = std::make_unique<Planes>(width, height);
    for (int c = 0; c < 3; ++c) {
        planes->plane(c).fill(base + 100 * c);
    }
    return planes;
}

/// A mask of zeros with the given pixels set to `value`.
inline std::unique_ptr<RgbDiscreteImage> maskWith(
    int width, int height, const std::vector<std::pair<int, int>>& pixels, int value) {
    auto mask = std::make_unique<RgbDiscreteImage>(width, height);
    for (const auto& [x, y] : pixels) {
        mask->setValue(x, y, value);
    }
    return mask;
}

/// What `object.printName` writes.
template <class Operator>
std::string nameOf(const Operator& object) {
    std::FILE* const file = std::tmpfile();
    object.printName(file);
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text += static_cast<char>(c);
    }
    std::fclose(file);
    return text;
}

}  // namespace orv::test
