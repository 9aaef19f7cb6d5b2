#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "base/rounding.h"
#include "images/discrete_image.h"
#include "images/float_image.h"
#include "images/real_image.h"

namespace orv::test {

/// An image of any channel count, depth and value range, for the paths that the one concrete
/// class of the library never reaches. Samples are ints of any size; what no test needs gives
/// null.
class SampleImage final : public DiscreteImage {
  public:
    SampleImage(int width, int height, int channels, int depthClass = 1)
        : DiscreteImage(width, height, channels, channels, depthClass),
          samples_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3U, 0) {
    }

    int lowest = 0;
    int highest = 255;

    int sample(int x, int y, int channel) const { return samples_[at(x, y, channel)]; }
    void setSample(int x, int y, int channel, int v) { samples_[at(x, y, channel)] = v; }

    std::unique_ptr<DiscreteImage> clone() const override {
        auto copy = std::make_unique<SampleImage>(width(), height(), channels(), depthClass());
        copy->samples_ = samples_;
        copy->lowest = lowest;
        copy->highest = highest;
        return copy;
    }
    int minValue() const override { return lowest; }
    int maxValue() const override { return highest; }

    std::unique_ptr<DiscreteImage> decimated(int) const override { return nullptr; }
    std::unique_ptr<DiscreteImage> replicatedZoom(int) const override { return nullptr; }
    std::unique_ptr<DiscreteImage> doubled() const override { return nullptr; }
    std::unique_ptr<DiscreteImage> rotatedCcw() const override { return nullptr; }
    std::unique_ptr<DiscreteImage> rotatedCw() const override { return nullptr; }
    std::unique_ptr<DiscreteImage> subImage(int, int, int, int) const override {
        return nullptr;
    }
    std::unique_ptr<DiscreteImage> subImageCorners(int, int, int, int) const override {
        return nullptr;
    }
    std::unique_ptr<DiscreteImage> resized(double, double) const override { return nullptr; }
    unsigned char* data() override { return nullptr; }

    void setPacked(int x, int y, int colour) override { setValue(x, y, colour); }
    void setChannelFromFloat(const FloatImage& plane, int channel) override {
        write(channel, [&](int x, int y) { return toInt(plane.row(x)[y]); });
    }
    void setChannelFromReal(const RealImage& plane, int channel) override {
        write(channel, [&](int x, int y) { return toInt(plane.row(x)[y]); });
    }
    void setChannelFromComplex(const ComplexPlane&, int, int) override {}

    void setRed(int x, int y, int v) override { setSample(x, y, 0, v); }
    void setGreen(int x, int y, int v) override { setSample(x, y, 1, v); }
    void setBlue(int x, int y, int v) override { setSample(x, y, 2, v); }
    void setValue(int x, int y, int v) override { setRgb(x, y, v, v, v); }
    void setRgb(int x, int y, int r, int g, int b) override {
        setRed(x, y, r);
        setGreen(x, y, g);
        setBlue(x, y, b);
    }
    int red(int x, int y) const override { return sample(x, y, 0); }
    int green(int x, int y) const override { return sample(x, y, 1); }
    int blue(int x, int y) const override { return sample(x, y, 2); }
    int value(int x, int y) const override { return sample(x, y, 0); }

  private:
    std::size_t at(int x, int y, int channel) const {
        return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width()) +
                static_cast<std::size_t>(x)) *
                   3U +
               static_cast<std::size_t>(channel);
    }

    template <typename Sample>
    void write(int channel, Sample sampleAt) {
        for (int x = 0; x < width(); ++x) {
            for (int y = 0; y < height(); ++y) {
                setSample(x, y, channel <= 1 ? 0 : channel - 1, sampleAt(x, y));
            }
        }
    }

    std::vector<int> samples_;
};

/// Whether two images of one size hold the same samples in all three channels.
inline bool sameSamples(const DiscreteImage& a, const DiscreteImage& b) {
    if (a.width() != b.width() || a.height() != b.height()) {
        return false;
    }
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.red(x, y) != b.red(x, y) || a.green(x, y) != b.green(x, y) ||
                a.blue(x, y) != b.blue(x, y)) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace orv::test
