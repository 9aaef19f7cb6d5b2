#include <algorithm>
#include <cmath>

#include "files/library_codec.h"
#include "files/vips_support.h"

namespace orv::cli {

namespace {

/// Takes an operation's result in place of its argument.
///
/// Fails:   false when the operation failed.
bool replace(VipsPicture& image, VipsImage* result, int failed) {
    image.reset(failed != 0 ? nullptr : result);
    return image != nullptr;
}

double whiteOf(SampleDepth depth) {
    return depth == SampleDepth::Bits8 ? 255.0 : depth == SampleDepth::Bits16 ? 65535.0 : 1.0;
}

bool resize(VipsPicture& image, double across, double down) {
    VipsImage* result = nullptr;
    // Without the gap every sample goes through the filter, none through a plain mean first.
    const int failed =
        vips_resize(image.get(), &result, across, "vscale", down, "gap", 0.0, nullptr);
    return replace(image, result, failed);
}

/// Colours weighted by alpha while they are averaged, so that clear pixels leave no fringe.
bool resizeWithAlpha(VipsPicture& image, double across, double down, double white) {
    const VipsBandFormat format = vips_image_get_format(image.get());
    VipsImage* result = nullptr;
    int failed = vips_premultiply(image.get(), &result, "max_alpha", white, nullptr);
    if (!replace(image, result, failed) || !resize(image, across, down)) {
        return false;
    }
    failed = vips_unpremultiply(image.get(), &result, "max_alpha", white, nullptr);
    if (!replace(image, result, failed)) {
        return false;
    }
    if (format != VIPS_FORMAT_FLOAT) {
        failed = vips_rint(image.get(), &result, nullptr);
        if (!replace(image, result, failed)) {
            return false;
        }
    }
    failed = vips_cast(image.get(), &result, format, nullptr);
    return replace(image, result, failed);
}

/// Filters with lobes below zero swing over; floats have to stay within black and white.
void clampFloats(InterleavedSamples& samples) {
    if (samples.depth != SampleDepth::Float) {
        return;
    }
    auto* const values = reinterpret_cast<float*>(samples.bytes.data());
    std::transform(values, values + samples.bytes.size() / sizeof(float), values,
                   [](float value) { return std::clamp(value, 0.0f, 1.0f); });
}

}  // namespace

std::string scaleByLibrary(Picture& picture, int maxSide) {
    std::string error = startVips();
    if (!error.empty()) {
        return error;
    }
    InterleavedSamples& samples = picture.samples;
    const double scale = static_cast<double>(maxSide) / std::max(samples.width, samples.height);
    InterleavedSamples small;
    small.width = std::max(1, static_cast<int>(std::lround(samples.width * scale)));
    small.height = std::max(1, static_cast<int>(std::lround(samples.height * scale)));
    small.channels = samples.channels;
    small.depth = samples.depth;
    const double across = static_cast<double>(small.width) / samples.width;
    const double down = static_cast<double>(small.height) / samples.height;
    VipsPicture image = imageOver(samples);
    const bool scaled =
        image != nullptr &&
        (picture.alpha ? resizeWithAlpha(image, across, down, whiteOf(samples.depth))
                       : resize(image, across, down));
    if (!scaled) {
        return "can't be scaled down (" + vipsReason() + ")";
    }
    small.width = vips_image_get_width(image.get());
    small.height = vips_image_get_height(image.get());
    error = copySamples(image.get(), small);
    if (error.empty()) {
        clampFloats(small);
        samples = std::move(small);
    }
    return error;
}

}  // namespace orv::cli
