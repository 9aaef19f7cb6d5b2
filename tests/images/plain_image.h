#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "base/rounding.h"
#include "images/discrete_image.h"
#include "images/float_image.h"
#include "images/real_image.h"

namespace orv::test {

/// An image with nothing but the operations that a class has to supply, of any channel count:
/// all else comes from the base. Samples are whole ints, so that a write shows what it was
/// given.
class PlainImage : public DiscreteImage {
  public:
    PlainImage(int width, int height, int channels, int depthClass = 1)
        : DiscreteImage(width, height, channels, channels, depthClass),
          samples_(static_cast<std::size_t>(width * height * 3)) {}

    std::unique_ptr<DiscreteImage> clone() const override {
        auto copy = std::make_unique<PlainImage>(width(), height(), channels(), depthClass());
        copy->samples_ = samples_;
        return copy;
    }
    std::unique_ptr<DiscreteImage> decimated(int /*n*/) const override { return nullptr; }
    std::unique_ptr<DiscreteImage> replicatedZoom(int /*n*/) const override { return nullptr; }
    std::unique_ptr<DiscreteImage> doubled() const override { return nullptr; }
    std::unique_ptr<DiscreteImage> rotatedCcw() const override { return nullptr; }
    std::unique_ptr<DiscreteImage> rotatedCw() const override { return nullptr; }
    void setPacked(int x, int y, int colour) override {
        if (channels() == 1) {
            setValue(x, y, colour);
        } else {
            setRgb(x, y, (colour >> 16) & 255, (colour >> 8) & 255, colour & 255);
        }
    }
    void setChannelFromFloat(const FloatImage& plane, int channel) override {
        for (int x = 0; x < width(); ++x) {
            for (int y = 0; y < height(); ++y) {
                write(channel, x, y, toInt(plane.row(x)[y]));
            }
        }
    }
    void setChannelFromReal(const RealImage& plane, int channel) override {
        for (int x = 0; x < width(); ++x) {
            for (int y = 0; y < height(); ++y) {
                write(channel, x, y, toInt(plane.row(x)[y]));
            }
        }
    }
    void setChannelFromComplex(const ComplexPlane& plane, int /*part*/, int channel) override {
        for (int x = 0; x < width(); ++x) {
            for (int y = 0; y < height(); ++y) {
                write(channel, x, y, toInt(plane.row(x)[y].real));
            }
        }
    }
    std::unique_ptr<DiscreteImage> subImage(int /*x*/, int /*y*/, int /*w*/,
                                            int /*h*/) const override {
        return nullptr;
    }
    std::unique_ptr<DiscreteImage> subImageCorners(int /*x0*/, int /*y0*/, int /*x1*/,
                                                   int /*y1*/) const override {
        return nullptr;
    }
    std::unique_ptr<DiscreteImage> resized(double /*fx*/, double /*fy*/) const override {
        return nullptr;
    }
    unsigned char* data() override { return nullptr; }
    void setRed(int x, int y, int v) override { sample(x, y, 0) = v; }
    void setGreen(int x, int y, int v) override { sample(x, y, 1) = v; }
    void setBlue(int x, int y, int v) override { sample(x, y, 2) = v; }
    void setValue(int x, int y, int v) override { setRgb(x, y, v, v, v); }
    void setRgb(int x, int y, int r, int g, int b) override {
        setRed(x, y, r);
        setGreen(x, y, g);
        setBlue(x, y, b);
    }
    int red(int x, int y) const override { return sample(x, y, 0); }
    int green(int x, int y) const override { return sample(x, y, 1); }
    int blue(int x, int y) const override { return sample(x, y, 2); }
    int value(int x, int y) const override {
        return (587 * green(x, y) + 299 * red(x, y) + 114 * blue(x, y)) / 1000;
    }

  private:
    void write(int channel, int x, int y, int v) {
        if (channel <= 3) {
            sample(x, y, channel < 1 ? 0 : channel - 1) = v;
        }
    }
    std::size_t at(int x, int y, int c) const {
        return static_cast<std::size_t>((y * width() + x) * 3 + c);
    }
    int& sample(int x, int y, int c) { return samples_[at(x, y, c)]; }
    int sample(int x, int y, int c) const { return samples_[at(x, y, c)]; }

    std::vector<int> samples_;
};

}  // namespace orv::test
