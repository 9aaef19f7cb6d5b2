#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "images/real_image.h"
#include "wavelets/transform/wavelet_filter_banks.h"
#include "wavelets/transform/wavelet_transform.h"

// Wavelet denoising as a textbook has it: each line gathered, transformed and stored back, the
// whole padded plane, full sorts. What the engine is measured against.

namespace orv::bench {

/// The four banks of all wavelets.
struct Banks {
    Banks() { InitWaveletFilters(analysisLow, analysisHigh, synthesisLow, synthesisHigh); }

    WaveletFilter analysisLow[kWaveletCount];
    WaveletFilter analysisHigh[kWaveletCount];
    WaveletFilter synthesisLow[kWaveletCount];
    WaveletFilter synthesisHigh[kWaveletCount];
};

using LineTransform = void (*)(const double*, double*, int, int, const WaveletFilter&,
                               const WaveletFilter&);

inline void plainAlongX(RealImage& plane, int width, int height, LineTransform transform,
                        const WaveletFilter& low, const WaveletFilter& high) {
    std::vector<double> from(static_cast<std::size_t>(width));
    std::vector<double> to(from.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            from[static_cast<std::size_t>(x)] = plane.row(x)[y];
        }
        transform(from.data(), to.data(), width, 1, low, high);
        for (int x = 0; x < width; ++x) {
            plane.row(x)[y] = to[static_cast<std::size_t>(x)];
        }
    }
}

inline void plainAlongY(RealImage& plane, int width, int height, LineTransform transform,
                        const WaveletFilter& low, const WaveletFilter& high) {
    std::vector<double> from(static_cast<std::size_t>(height));
    std::vector<double> to(from.size());
    for (int x = 0; x < width; ++x) {
        std::copy_n(plane.row(x), from.size(), from.data());
        transform(from.data(), to.data(), height, 1, low, high);
        std::copy_n(to.data(), to.size(), plane.row(x));
    }
}

inline void plainForward(RealImage& plane, int levels, const WaveletFilter& low,
                         const WaveletFilter& high) {
    int w = plane.width();
    int h = plane.height();
    for (int level = 0; level < levels; ++level, w /= 2, h /= 2) {
        plainAlongX(plane, w, h, FwtVector, low, high);
        plainAlongY(plane, w, h, FwtVector, low, high);
    }
}

inline void plainInverse(RealImage& plane, int levels, const WaveletFilter& low,
                         const WaveletFilter& high) {
    for (int level = levels; level > 0; --level) {
        const int w = plane.width() / power2(level - 1);
        const int h = plane.height() / power2(level - 1);
        plainAlongY(plane, w, h, IwtVector, low, high);
        plainAlongX(plane, w, h, IwtVector, low, high);
    }
}

inline double plainNoise(const RealImage& plane) {
    const int w = plane.width();
    const int h = plane.height();
    std::vector<double> values;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            if (!(y < h / 2 && x < w / 2)) {
                values.push_back(std::fabs(plane.row(x)[y]));
            }
        }
    }
    std::sort(values.begin(), values.end());
    return values[values.size() / 2 - 1] * 1.4718111371948752;
}

inline double plainSureThreshold(const RealImage& band) {
    std::vector<double> s(band.sampleCount());
    std::transform(band.data(), band.data() + s.size(), s.begin(),
                   [](double v) { return std::fabs(v); });
    std::sort(s.begin(), s.end());
    const double n = static_cast<double>(s.size());
    double sum = 0.0;
    double least = 0.0;
    double best = 0.0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const double k = static_cast<double>(i);
        sum += s[i] * s[i];
        const double risk = s[i] * s[i] * (n - k) + sum + (n - 2.0 * k);
        if (i == 0 || risk < least) {
            least = risk;
            best = s[i];
        }
    }
    return best;
}

inline void plainSoften(double& v, double threshold) {
    if (!(std::fabs(v) > threshold)) {
        v = 0.0;
    } else {
        v = v > 0.0 ? v - threshold : v + threshold;
    }
}

inline void plainSure(RealImage& plane, int levels) {
    const double noise = plainNoise(plane);
    if (noise != 0.0) {
        plane.divide(noise);
    }
    for (int level = 1; level <= levels; ++level) {
        const int w = plane.width() / power2(level);
        const int h = plane.height() / power2(level);
        const int corners[3][2] = {{w, 0}, {0, h}, {w, h}};
        for (const int* const corner : corners) {
            RealImage band(w, h);
            for (int x = 0; x < w; ++x) {
                std::copy_n(plane.row(corner[0] + x) + corner[1], h, band.row(x));
            }
            const double threshold = plainSureThreshold(band);
            for (int x = 0; x < w; ++x) {
                for (int y = 0; y < h; ++y) {
                    plainSoften(plane.row(corner[0] + x)[corner[1] + y], threshold);
                }
            }
        }
    }
    if (noise != 0.0) {
        plane.scale(noise);
    }
}

/// The SURE rule on a plane in the corner of a square of `side`.
inline std::unique_ptr<RealImage> plainDenoised(const RealImage& source, int side, int levels,
                                                int wavelet) {
    static const Banks banks;
    RealImage plane(side, side);
    for (int x = 0; x < source.width(); ++x) {
        std::copy_n(source.row(x), source.height(), plane.row(x));
    }
    plainForward(plane, levels, banks.analysisLow[wavelet], banks.analysisHigh[wavelet]);
    plainSure(plane, levels);
    plainInverse(plane, levels, banks.synthesisLow[wavelet], banks.synthesisHigh[wavelet]);
    auto result = std::make_unique<RealImage>(source.width(), source.height());
    for (int x = 0; x < source.width(); ++x) {
        std::copy_n(plane.row(x), source.height(), result->row(x));
    }
    return result;
}

}  // namespace orv::bench
