#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "base/elementary.h"
#include "images/real_image.h"

// The shrinkage rules word by word: full sorts, whole planes, a sheet for every removal.

namespace orv::test {

/// The noise level from sorted magnitudes, gathered row by row.
inline double plainNoise(const RealImage& plane, int height, int width) {
    std::vector<double> values;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (!(y < height / 2 && x < width / 2)) {
                values.push_back(std::fabs(plane.row(x)[y]));
            }
        }
    }
    values.resize(static_cast<std::size_t>(0.75 * height * width));
    std::sort(values.begin(), values.end());
    return values.size() < 2 ? 0.0 : values[values.size() / 2 - 1] * 1.4718111371948752;
}

/// The threshold of least risk from sorted magnitudes.
inline double plainSureThreshold(const std::vector<double>& values) {
    std::vector<double> s(values.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        s[i] = std::fabs(values[i]);
    }
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

/// Running sums of centred squares; the squares are summed in lanes of eight, joined pairwise.
inline void plainSheet(RealImage& plane, int height, int width) {
    double lanes[8] = {};
    double* const data = plane.data();
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        data[i] = data[i] * data[i];
        lanes[i % 8] += data[i];
    }
    const double sum = ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
                       ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
    const double mean = sum / (static_cast<double>(height) * static_cast<double>(width));
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        data[i] = (data[i] - mean) / static_cast<double>(height);
    }
    for (int y = 1; y < height; ++y) {
        plane.row(0)[y] += plane.row(0)[y - 1];
    }
    for (int x = 1; x < width; ++x) {
        plane.row(x)[0] += plane.row(x - 1)[0];
    }
    for (int y = 1; y < height; ++y) {
        for (int x = 1; x < width; ++x) {
            plane.row(x)[y] = plane.row(x)[y] + plane.row(x)[y - 1] + plane.row(x - 1)[y] -
                              plane.row(x - 1)[y - 1];
        }
    }
}

/// A new sheet after every single removal; changes the band.
inline double plainBrownianThreshold(RealImage& band, int height, int width, double critical) {
    long long remaining = static_cast<long long>(height) * width;
    while (remaining > 1) {
        RealImage work(band);
        plainSheet(work, height, width);
        double s = 0.0;
        double t = 0.0;
        std::size_t position = 0;
        for (std::size_t i = 0; i < band.sampleCount(); ++i) {
            if (std::fabs(work.data()[i]) > s) {
                s = std::fabs(work.data()[i]);
            }
            if (std::fabs(band.data()[i]) > t) {
                t = std::fabs(band.data()[i]);
                position = i;
            }
        }
        if (!(s > critical)) {
            return t;
        }
        band.data()[position] = 0.0;
        --remaining;
    }
    return 0.0;
}

/// Soft thresholding of the box from (x0, y0) to (x1, y1); gives how many values became 0.
inline int plainShrink(RealImage& plane, int x0, int x1, int y0, int y1, double threshold) {
    int tossed = 0;
    for (int x = x0; x < x1; ++x) {
        for (int y = y0; y < y1; ++y) {
            double& v = plane.row(x)[y];
            if (!(std::fabs(v) > threshold)) {
                v = 0.0;
                ++tossed;
            } else if (v > 0.0) {
                v -= threshold;
            } else {
                v += threshold;
            }
        }
    }
    return tossed;
}

/// Rule 0 (SURE), 1 (universal) or 2 (Brownian sheet) on a coefficient plane; `criticals` holds
/// a critical value for each level.
inline void plainRule(RealImage& plane, int rule, int levels,
                      const std::vector<double>& criticals) {
    const int width = plane.width();
    const int height = plane.height();
    const double noise = plainNoise(plane, height, width);
    const bool scaled = rule != 1 && noise != 0.0;
    for (std::size_t i = 0; scaled && i < plane.sampleCount(); ++i) {
        plane.data()[i] /= noise;
    }
    const double universal =
        std::sqrt(2.0 * elementaryLog(static_cast<double>(height) * width)) * noise;
    int w = width / 2;
    int h = height / 2;
    for (int level = 1; level <= levels; ++level, w /= 2, h /= 2) {
        const int boxes[3][2] = {{w, 0}, {0, h}, {w, h}};
        for (const int* const box : boxes) {
            RealImage band(w, h);
            for (int x = 0; x < w; ++x) {
                std::copy_n(plane.row(box[0] + x) + box[1], h, band.row(x));
            }
            double threshold = universal;
            if (rule == 0) {
                threshold = plainSureThreshold(
                    std::vector<double>(band.data(), band.data() + band.sampleCount()));
            } else if (rule == 2) {
                threshold = plainBrownianThreshold(
                    band, h, w, criticals[static_cast<std::size_t>(level - 1)]);
            }
            plainShrink(plane, box[0], box[0] + w, box[1], box[1] + h, threshold);
        }
    }
    for (std::size_t i = 0; scaled && i < plane.sampleCount(); ++i) {
        plane.data()[i] *= noise;
    }
}

}  // namespace orv::test
