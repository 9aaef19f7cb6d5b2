#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <utility>
#include <vector>

#include "files/library_codec.h"

namespace orv::cli {

namespace {

constexpr double kLobes = 3.0;

double lanczos(double x) {
    if (std::abs(x) < 1e-8) {
        return 1.0;
    }
    if (std::abs(x) >= kLobes) {
        return 0.0;
    }
    const double angle = std::numbers::pi * x;
    return kLobes * std::sin(angle) * std::sin(angle / kLobes) / (angle * angle);
}

/// The weights of the samples that make up one sample of a shorter line, from `first` on.
struct Taps {
    int first;
    std::vector<float> weights;
};

std::vector<Taps> tapsFor(int from, int to) {
    const double step = static_cast<double>(from) / to;
    std::vector<Taps> all;
    for (int i = 0; i < to; ++i) {
        const double centre = (i + 0.5) * step - 0.5;
        const int first = static_cast<int>(std::ceil(centre - kLobes * step));
        const int last = static_cast<int>(std::floor(centre + kLobes * step));
        // Beyond the borders the outermost sample goes on.
        const int low = std::clamp(first, 0, from - 1);
        const int high = std::clamp(last, 0, from - 1);
        Taps taps{low, std::vector<float>(static_cast<std::size_t>(high - low + 1), 0.0f)};
        double sum = 0.0;
        for (int k = first; k <= last; ++k) {
            sum += lanczos((k - centre) / step);
        }
        for (int k = first; k <= last; ++k) {
            const auto place = static_cast<std::size_t>(std::clamp(k, low, high) - low);
            taps.weights[place] += static_cast<float>(lanczos((k - centre) / step) / sum);
        }
        all.push_back(std::move(taps));
    }
    return all;
}

/// Floats of one picture, white being that of its samples.
struct Sheet {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t channels = 0;
    std::vector<float> values;
};

Sheet sheetOf(const InterleavedSamples& samples) {
    Sheet sheet{static_cast<std::size_t>(samples.width),
                static_cast<std::size_t>(samples.height),
                static_cast<std::size_t>(samples.channels),
                {}};
    sheet.values.resize(sheet.width * sheet.height * sheet.channels);
    for (std::size_t i = 0; i < sheet.values.size(); ++i) {
        if (samples.depth == SampleDepth::Bits8) {
            sheet.values[i] = samples.bytes[i];
        } else {
            std::uint16_t value = 0;
            std::memcpy(&value, &samples.bytes[2 * i], sizeof(value));
            sheet.values[i] = value;
        }
    }
    return sheet;
}

/// Scales along x and lays the result on its side, so that the second call scales along y.
Sheet scaledAndTurned(const Sheet& sheet, int width) {
    const std::vector<Taps> taps = tapsFor(static_cast<int>(sheet.width), width);
    Sheet result{sheet.height, static_cast<std::size_t>(width), sheet.channels, {}};
    result.values.resize(result.width * result.height * result.channels);
    for (std::size_t y = 0; y < sheet.height; ++y) {
        const float* const row = &sheet.values[y * sheet.width * sheet.channels];
        for (std::size_t x = 0; x < taps.size(); ++x) {
            float* const to = &result.values[(x * result.width + y) * sheet.channels];
            for (std::size_t c = 0; c < sheet.channels; ++c) {
                const float* from =
                    row + static_cast<std::size_t>(taps[x].first) * sheet.channels + c;
                float sum = 0.0f;
                for (const float weight : taps[x].weights) {
                    sum += weight * *from;
                    from += sheet.channels;
                }
                to[c] = sum;
            }
        }
    }
    return result;
}

/// Colours times alpha, so that clear pixels leave no fringe; or back again.
void weighByAlpha(Sheet& sheet, float white, bool back) {
    const std::size_t colours = sheet.channels - 1;
    for (std::size_t i = 0; i < sheet.values.size(); i += sheet.channels) {
        const float alpha = sheet.values[i + colours] / white;
        const float factor = !back ? alpha : alpha > 0.0f ? 1.0f / alpha : 0.0f;
        for (std::size_t c = 0; c < colours; ++c) {
            sheet.values[i + c] *= factor;
        }
    }
}

void store(const Sheet& sheet, float white, InterleavedSamples& samples) {
    samples.width = static_cast<int>(sheet.width);
    samples.height = static_cast<int>(sheet.height);
    samples.bytes.resize(sheet.values.size() * bytesOf(samples.depth));
    for (std::size_t i = 0; i < sheet.values.size(); ++i) {
        const float value = std::clamp(std::round(sheet.values[i]), 0.0f, white);
        if (samples.depth == SampleDepth::Bits8) {
            samples.bytes[i] = static_cast<unsigned char>(value);
        } else {
            const auto word = static_cast<std::uint16_t>(value);
            std::memcpy(&samples.bytes[2 * i], &word, sizeof(word));
        }
    }
}

}  // namespace

std::string scaleByLibrary(Picture& picture, int maxSide) {
    InterleavedSamples& samples = picture.samples;
    if (samples.depth == SampleDepth::Float) {
        return "float samples can't be scaled down on Windows";
    }
    const float white = samples.depth == SampleDepth::Bits8 ? 255.0f : 65535.0f;
    const double scale = static_cast<double>(maxSide) / std::max(samples.width, samples.height);
    const int width = std::max(1, static_cast<int>(std::lround(samples.width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(samples.height * scale)));
    Sheet sheet = sheetOf(samples);
    if (picture.alpha) {
        weighByAlpha(sheet, white, /*back=*/false);
    }
    // The scaler of the component is a plain filter in some versions, the nearest pixel in others.
    sheet = scaledAndTurned(scaledAndTurned(sheet, width), height);
    if (picture.alpha) {
        weighByAlpha(sheet, white, /*back=*/true);
    }
    store(sheet, white, samples);
    return {};
}

}  // namespace orv::cli
