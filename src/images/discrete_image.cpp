#include "images/discrete_image.h"

#include <algorithm>

#include "base/elementary.h"
#include "base/text_output.h"
#include "images/float_image3.h"
#include "images/real_image3.h"

namespace orv {

namespace {

constexpr const char* kDescription = "DiscreteImage(%d,%d) c=%d\n";

}  // namespace

DiscreteImage::DiscreteImage(int width, int height, int channels, int colorModel,
                             int depthClass)
    : width_(std::max(width, 0)),
      height_(std::max(height, 0)),
      channels_(channels),
      colorModel_(colorModel),
      depthClass_(depthClass),
      rowLength_(width_),
      pi_(4.0 * elementaryAtan(1.0)) {}

int DiscreteImage::typeCode() const {
    return typeCode_;
}

std::unique_ptr<DiscreteImage> DiscreteImage::interleavedZoom(int /*n*/, int /*r*/, int /*g*/,
                                                              int /*b*/) const {
    return nullptr;
}

std::unique_ptr<DiscreteImage> DiscreteImage::mirroredX() const {
    auto result = clone();
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y) {
            result->setValue(width_ - 1 - x, y, value(x, y));
        }
    }
    return result;
}

std::unique_ptr<DiscreteImage> DiscreteImage::mirroredY() const {
    auto result = clone();
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y) {
            result->setValue(x, height_ - 1 - y, value(x, y));
        }
    }
    return result;
}

std::unique_ptr<DiscreteImage> DiscreteImage::rotated180() const {
    auto result = clone();
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y) {
            result->setValue(width_ - 1 - x, height_ - 1 - y, value(x, y));
        }
    }
    return result;
}

int DiscreteImage::colorCount() const {
    return -1;
}

void DiscreteImage::copyFrom(const DiscreteImage& image) {
    const int columns = std::min(width_, image.width());
    const int lines = std::min(height_, image.height());
    for (int x = 0; x < columns; ++x) {
        for (int y = 0; y < lines; ++y) {
            setPacked(x, y, image.value(x, y));
        }
    }
}

void DiscreteImage::setFromFloat3(const FloatImage3& planes) {
    for (int channel = 1; channel <= 3; ++channel) {
        setChannelFromFloat(planes.plane(channel - 1), channel);
    }
}

void DiscreteImage::setFromReal3(const RealImage3& planes) {
    for (int channel = 1; channel <= 3; ++channel) {
        setChannelFromReal(planes.plane(channel - 1), channel);
    }
}

void DiscreteImage::setFromComplex3(const ComplexPlane3& planes, int part) {
    if (part != kRealPart) {
        return;
    }
    for (int channel = 1; channel <= 3; ++channel) {
        setChannelFromComplex(planes[static_cast<std::size_t>(channel - 1)], part, channel);
    }
}

void DiscreteImage::copyChannel(const DiscreteImage& /*image*/, int /*channel*/) {}

void DiscreteImage::copyMasked(const DiscreteImage& image, const DiscreteImage* mask) {
    int columns = std::min(width_, image.width());
    int lines = std::min(height_, image.height());
    if (mask != nullptr) {
        columns = std::min(columns, mask->width());
        lines = std::min(lines, mask->height());
    }
    for (int x = 0; x < columns; ++x) {
        for (int y = 0; y < lines; ++y) {
            if (mask == nullptr || mask->value(x, y) == maskValue_) {
                setValue(x, y, image.value(x, y));
            }
        }
    }
}

void DiscreteImage::fillRgb(int r, int g, int b) {
    for (int x = 0; x < width_; ++x) {
        for (int y = 0; y < height_; ++y) {
            setRgb(x, y, r, g, b);
        }
    }
}

void DiscreteImage::fill(int /*v*/) {}

int DiscreteImage::getMaskValue() const {
    return maskValue_;
}

void DiscreteImage::setMaskValue(int v) {
    maskValue_ = v;
}

std::unique_ptr<DiscreteImage> DiscreteImage::thumbnail(int /*n*/) const {
    return nullptr;
}

void DiscreteImage::setOrigin(int x, int y) {
    originX_ = x;
    originY_ = y;
}

int DiscreteImage::getOriginX() const {
    return originX_;
}

int DiscreteImage::getOriginY() const {
    return originY_;
}

int DiscreteImage::minValue() const {
    return 0;
}

int DiscreteImage::maxValue() const {
    return 255;
}

int DiscreteImage::bitsPerChannel() const {
    return 8;
}

void DiscreteImage::printTo(std::FILE* file) const {
    printTextTo(file, kDescription, width_, height_, channels_);
    std::fflush(file);
}

void DiscreteImage::print() const {
    printText(kDescription, width_, height_, channels_);
}

void DiscreteImage::restoreFullColor(int /*method*/, int /*iterations*/, double /*coeff*/) {}

void DiscreteImage::restoreSeparateColor(int /*space*/, int /*kind*/, int method,
                                         int iterations, double coeff, double /*spare*/) {
    restoreFullColor(method, iterations, coeff);
}

void DiscreteImage::restoreSeparateColorDefault(int space, int method, int iterations,
                                                double coeff) {
    restoreSeparateColor(space, /*kind=*/1, method, iterations, coeff, /*spare=*/0.5);
}

void DiscreteImage::restoreColorA(int method, int iterations, double coeff) {
    restoreFullColor(method, iterations, coeff);
}

void DiscreteImage::restoreColorB(int method, int iterations, double coeff) {
    restoreFullColor(method, iterations, coeff);
}

const unsigned char* DiscreteImage::packedRgb() const {
    return nullptr;
}

}  // namespace orv
