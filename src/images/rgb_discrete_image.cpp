#include "images/rgb_discrete_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "base/rounding.h"
#include "base/text_output.h"
#include "images/float_image3.h"
#include "images/kernels/pixel_kernels.h"
#include "images/real_image3.h"

namespace orv {

namespace {

constexpr int kChannels = 3;
constexpr int kRgbModel = 3;
constexpr int kEightBit = 1;
constexpr int kRgbTypeCode = 10;
constexpr std::size_t kAlignment = 32;

unsigned char* alignedUp(void* block) {
    unsigned char* const start = static_cast<unsigned char*>(block);
    const std::size_t address = reinterpret_cast<std::uintptr_t>(start);
    const std::size_t aligned = (address + kAlignment - 1) / kAlignment * kAlignment;
    return start + (aligned - address);
}

std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

template <class Planes>
std::array<std::size_t, 3> columnStrides(const Planes& planes) {
    return {sizeOf(planes.plane(0).height()), sizeOf(planes.plane(1).height()),
            sizeOf(planes.plane(2).height())};
}

}  // namespace

RgbDiscreteImage::RgbDiscreteImage(Uninitialised /*key*/, int width, int height)
    : DiscreteImage(width, height, kChannels, kRgbModel, kEightBit),
      rawPixels_(byteCount() + kAlignment, kAlignment),
      pixels_(alignedUp(rawPixels_.data())),
      rows_(std::make_unique<unsigned char*[]>(sizeOf(std::max(this->height(), 1)))) {
    typeCode_ = kRgbTypeCode;
    for (int y = 0; y < this->height(); ++y) {
        rows_[sizeOf(y)] = pixels_ + sizeOf(y) * rowBytes();
    }
}

RgbDiscreteImage::RgbDiscreteImage(int width, int height)
    : RgbDiscreteImage(Uninitialised(), width, height) {
    std::memset(pixels_, 0, byteCount());
}

RgbDiscreteImage::RgbDiscreteImage(int width, int height, const unsigned char* bytes)
    : RgbDiscreteImage(Uninitialised(), width, height) {
    if (byteCount() > 0) {
        std::memcpy(pixels_, bytes, byteCount());
    }
}

std::size_t RgbDiscreteImage::rowBytes() const {
    return std::size_t{3} * sizeOf(width());
}

std::size_t RgbDiscreteImage::byteCount() const {
    return rowBytes() * sizeOf(height());
}

std::unique_ptr<DiscreteImage> RgbDiscreteImage::clone() const {
    return std::make_unique<RgbDiscreteImage>(width(), height(), pixels_);
}

int RgbDiscreteImage::colorCount() const {
    std::array<unsigned char, 256> table;
    std::size_t entries = 0;
    for (int x = 0; x < width(); ++x) {
        for (int y = 0; y < height(); ++y) {
            if (entries == table.size()) {
                return -1;
            }
            const int colour = (red(x, y) << 16) | (green(x, y) << 8) | blue(x, y);
            // quirk: colour-count
            const auto end = table.begin() + static_cast<std::ptrdiff_t>(entries);
            if (std::find(table.begin(), end, colour) == end) {
                table[entries++] = toLowByte(colour);
            }
        }
    }
    return static_cast<int>(entries);
}

void RgbDiscreteImage::setPacked(int x, int y, int colour) {
    setRgb(x, y, colour >> 16, colour >> 8, colour);
}

void RgbDiscreteImage::copyFrom(const DiscreteImage& image) {
    copyMasked(image, nullptr);
}

template <class Sample>
void RgbDiscreteImage::writeChannel(int channel, Sample sample) {
    if (channel > kChannels) {
        return;
    }
    const std::size_t offset = sizeOf(std::max(channel, 1) - 1);
    for (int x = 0; x < width(); ++x) {
        for (int y = 0; y < height(); ++y) {
            pixel(x, y)[offset] = toLowByte(sample(x, y));
        }
    }
}

void RgbDiscreteImage::setFromFloat3(const FloatImage3& planes) {
    const std::array<const float*, 3> samples = {planes.plane(0).data(), planes.plane(1).data(),
                                                 planes.plane(2).data()};
    pixelKernels().rgbFloat.writeRgb(samples.data(), columnStrides(planes).data(), pixels_,
                                     rowBytes(), width(), height());
}

void RgbDiscreteImage::setChannelFromFloat(const FloatImage& plane, int channel) {
    if (channel <= kChannels) {
        pixelKernels().rgbFloat.writeChannel(plane.data(), sizeOf(plane.height()), pixels_,
                                             rowBytes(), width(), height(),
                                             std::max(channel, 1) - 1);
    }
}

void RgbDiscreteImage::setFromReal3(const RealImage3& planes) {
    const std::array<const double*, 3> samples = {
        planes.plane(0).data(), planes.plane(1).data(), planes.plane(2).data()};
    pixelKernels().rgbDouble.writeRgb(samples.data(), columnStrides(planes).data(), pixels_,
                                      rowBytes(), width(), height());
}

void RgbDiscreteImage::setChannelFromReal(const RealImage& plane, int channel) {
    if (channel <= kChannels) {
        pixelKernels().rgbDouble.writeChannel(plane.data(), sizeOf(plane.height()), pixels_,
                                              rowBytes(), width(), height(),
                                              std::max(channel, 1) - 1);
    }
}

void RgbDiscreteImage::setChannelFromComplex(const ComplexPlane& plane, int part, int channel) {
    switch (part) {
        case kRealPart:
            writeChannel(channel, [&](int x, int y) { return toInt(plane.row(x)[y].real); });
            return;
        case kImaginaryPart:
            writeChannel(channel,
                         [&](int x, int y) { return toInt(plane.row(x)[y].imaginary); });
            return;
        case kModulus:
            writeChannel(channel, [&](int x, int y) {
                const ComplexSample z = plane.row(x)[y];
                return toInt(std::sqrt(z.real * z.real + z.imaginary * z.imaginary));
            });
            return;
        default:
            return;
    }
}

void RgbDiscreteImage::copyChannel(const DiscreteImage& image, int channel) {
    const int columns = std::min(width(), image.width());
    const int lines = std::min(height(), image.height());
    for (int y = 0; y < lines; ++y) {
        for (int x = 0; x < columns; ++x) {
            if (channel <= 1) {
                setRed(x, y, image.red(x, y));
            } else if (channel == 2) {
                setGreen(x, y, image.green(x, y));
            } else if (channel == 3) {
                setBlue(x, y, image.blue(x, y));
            }
        }
    }
}

void RgbDiscreteImage::copyMasked(const DiscreteImage& image, const DiscreteImage* mask) {
    int columns = std::min(width(), image.width());
    int lines = std::min(height(), image.height());
    if (mask != nullptr) {
        columns = std::min(columns, mask->width());
        lines = std::min(lines, mask->height());
    }
    for (int y = 0; y < lines; ++y) {
        for (int x = 0; x < columns; ++x) {
            if (mask == nullptr || mask->value(x, y) == getMaskValue()) {
                setRgb(x, y, image.red(x, y), image.green(x, y), image.blue(x, y));
            }
        }
    }
}

void RgbDiscreteImage::fill(int v) {
    std::memset(pixels_, toLowByte(v), byteCount());
}

unsigned char* RgbDiscreteImage::data() {
    return pixels_;
}

void RgbDiscreteImage::setRed(int x, int y, int v) {
    pixel(x, y)[0] = toLowByte(v);
}

void RgbDiscreteImage::setGreen(int x, int y, int v) {
    pixel(x, y)[1] = toLowByte(v);
}

void RgbDiscreteImage::setBlue(int x, int y, int v) {
    pixel(x, y)[2] = toLowByte(v);
}

void RgbDiscreteImage::setValue(int x, int y, int v) {
    setRgb(x, y, v, v, v);
}

void RgbDiscreteImage::setRgb(int x, int y, int r, int g, int b) {
    unsigned char* const bytes = pixel(x, y);
    bytes[0] = toLowByte(r);
    bytes[1] = toLowByte(g);
    bytes[2] = toLowByte(b);
}

int RgbDiscreteImage::red(int x, int y) const {
    return pixel(x, y)[0];
}

int RgbDiscreteImage::green(int x, int y) const {
    return pixel(x, y)[1];
}

int RgbDiscreteImage::blue(int x, int y) const {
    return pixel(x, y)[2];
}

int RgbDiscreteImage::value(int x, int y) const {
    const unsigned char* const bytes = pixel(x, y);
    return (587 * bytes[1] + 299 * bytes[0] + 114 * bytes[2]) / 1000;
}

int RgbDiscreteImage::grey(int x, int y) const {
    return value(x, y);
}

void RgbDiscreteImage::printTo(std::FILE* file) const {
    printTextTo(file, "RGB ");
    DiscreteImage::printTo(file);
}

void RgbDiscreteImage::print() const {
    printText("RGB ");
    DiscreteImage::print();
}

const unsigned char* RgbDiscreteImage::packedRgb() const {
    return pixels_;
}

}  // namespace orv
