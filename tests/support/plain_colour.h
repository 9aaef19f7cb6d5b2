#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "base/elementary.h"
#include "images/discrete_image.h"
#include "images/real_image3.h"

namespace orv::test {

/// Colour transfer in plain words: one sample after the other, sums that span whole planes.
struct PlainColour {
    using Pixel = std::array<double, 3>;

    static constexpr double kLms[3][3] = {
        {0.3811, 0.5783, 0.0402}, {0.1967, 0.7244, 0.0782}, {0.0241, 0.1288, 0.8444}};
    static constexpr double kRgb[3][3] = {
        {4.4679, -3.5873, 0.1193}, {-1.2186, 2.3809, -0.1624}, {0.0497, -0.2439, 1.2045}};
    static constexpr double kLab[3][3] = {{1, 1, 1}, {1, 1, -2}, {1, -1, 0}};
    static constexpr double kLogs[3][3] = {{1, 1, 1}, {1, 1, -1}, {1, -2, 0}};

    static Pixel product(const double (&m)[3][3], const Pixel& p) {
        Pixel out;
        for (std::size_t k = 0; k < 3; ++k) {
            out[k] = m[k][0] * p[0] + m[k][1] * p[1] + m[k][2] * p[2];
        }
        return out;
    }

    /// From (r, g, b) / 256 to l, alpha, beta.
    static Pixel toLab(const Pixel& rgb) {
        Pixel logs = product(kLms, rgb);
        for (double& v : logs) {
            v = elementaryLog10(v);
        }
        const Pixel lab = product(kLab, logs);
        return {lab[0] * 0.5773502691896258, lab[1] * 0.4082482904638631,
                lab[2] * 0.7071067811865475};
    }

    /// From l, alpha, beta to (r, g, b) / 256.
    static Pixel toRgb(const Pixel& lab) {
        Pixel lms = product(kLogs, {lab[0] * 0.5773502691896257, lab[1] * 0.40824829046386296,
                                    lab[2] * 0.7071067811865476});
        for (double& v : lms) {
            v = elementaryExp10(v);
        }
        return product(kRgb, lms);
    }

    static double limited(double sample) {
        const double v = sample * 256.0;
        return v > 255.0 ? 255.0 : (v > 0.0 ? v : 0.0);
    }

    /// Mean and deviation over samples in the declared lanes.
    static std::array<double, 2> statistics(const RealImage& plane, double leastVariance) {
        double sum[8] = {};
        double squares[8] = {};
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            sum[i % 8] += plane.data()[i];
            squares[i % 8] += plane.data()[i] * plane.data()[i];
        }
        const auto join = [](const double* v) {
            return ((v[0] + v[1]) + (v[2] + v[3])) + ((v[4] + v[5]) + (v[6] + v[7]));
        };
        const double n = static_cast<double>(plane.sampleCount());
        const double mean = join(sum) / n;
        const double variance = join(squares) / n - mean * mean;
        return {mean, variance < leastVariance ? 0.0 : std::sqrt(variance)};
    }

    static RealImage3 lab(const RealImage3& planes, double offset) {
        RealImage3 out(planes.width(), planes.height());
        for (int x = 0; x < planes.width(); ++x) {
            for (int y = 0; y < planes.height(); ++y) {
                Pixel p;
                for (int c = 0; c < 3; ++c) {
                    p[static_cast<std::size_t>(c)] =
                        (planes.plane(c).row(x)[y] + offset) / 256.0;
                }
                p = toLab(p);
                for (int c = 0; c < 3; ++c) {
                    out.plane(c).row(x)[y] = p[static_cast<std::size_t>(c)];
                }
            }
        }
        return out;
    }

    /// l, alpha, beta back to grey levels, limited to 0 and 255.
    static void greyLevels(RealImage3& planes) {
        for (int x = 0; x < planes.width(); ++x) {
            for (int y = 0; y < planes.height(); ++y) {
                const Pixel p = toRgb({planes.plane(0).row(x)[y], planes.plane(1).row(x)[y],
                                       planes.plane(2).row(x)[y]});
                for (int c = 0; c < 3; ++c) {
                    planes.plane(c).row(x)[y] = limited(p[static_cast<std::size_t>(c)]);
                }
            }
        }
    }

    /// The whole transfer of colours between two colour pictures.
    static RealImage3 recoloured(const RealImage3& source, const RealImage3& style) {
        const RealImage3 styleLab = lab(style, 1.0);
        RealImage3 result = lab(source, 1.0);
        for (int k = 0; k < 3; ++k) {
            const auto [styleMean, styleDeviation] = statistics(styleLab.plane(k), 1e-12);
            const auto [mean, deviation] = statistics(result.plane(k), 1e-12);
            for (int x = 0; x < result.width(); ++x) {
                for (int y = 0; y < result.height(); ++y) {
                    double& v = result.plane(k).row(x)[y];
                    v = deviation == 0.0
                            ? styleMean
                            : (styleDeviation / deviation) * (v - mean) + styleMean;
                }
            }
        }
        greyLevels(result);
        return result;
    }

    /// The mean and deviation over the samples of a window that lie inside the plane.
    static std::array<double, 2> window(const RealImage& plane, int x0, int y0, int side) {
        double sum = 0.0;
        double squares = 0.0;
        int n = 0;
        for (int x = x0; x < x0 + side; ++x) {
            for (int y = y0; y < y0 + side; ++y) {
                if (x >= 0 && x < plane.width() && y >= 0 && y < plane.height()) {
                    sum += plane.row(x)[y];
                    squares += plane.row(x)[y] * plane.row(x)[y];
                    ++n;
                }
            }
        }
        const double mean = sum / n;
        const double variance = squares / n - mean * mean;
        return {mean, variance < 0.0 ? 0.0 : std::sqrt(variance)};
    }

    /// The scan for the nearest score, swatch by swatch.
    static int nearest(double score, std::span<const double> scores) {
        int best = 0;
        bool found = false;
        double least = 0.0;
        for (std::size_t k = 0; k < scores.size(); ++k) {
            const double difference = (score - scores[k]) * (score - scores[k]);
            if (std::isnan(difference)) {
                continue;
            }
            if (!found || difference < least) {
                found = true;
                least = difference;
                best = static_cast<int>(k);
            }
        }
        return best;
    }

    /// One square of a colour picture.
    struct Swatch {
        int x;
        int y;
        double mean;
        double deviation;
        double alpha;
        double beta;
    };

    /// The random squares of a colour picture, from the generator's state `seed`.
    static std::vector<Swatch> swatches(const RealImage3& colour, unsigned& seed,
                                        int side = 5) {
        const RealImage3 planes = lab(colour, 0.0);
        const auto draw = [&](int length) {
            seed = seed * 214013U + 2531011U;
            const long value = static_cast<long>((seed >> 16U) & 0x7fffU);
            return static_cast<int>(value * length / 32767);
        };
        const int width = colour.width();
        const int height = colour.height();
        std::vector<Swatch> made;
        for (int k = 0; k < (width + height) / 2; ++k) {
            int x = -1;
            int y = -1;
            while (!(side <= x && x < width - side && side <= y && y < height - side)) {
                x = draw(width);
                y = draw(height);
            }
            const auto [mean, deviation] = window(planes.plane(0), x, y, side);
            made.push_back({x, y, mean, deviation,
                            planes.plane(1).row(x + side / 2)[y + side / 2],
                            planes.plane(2).row(x + side / 2)[y + side / 2]});
        }
        return made;
    }

    /// A grey picture in the colours of given squares, by windows of twice `half`.
    static RealImage3 colourised(const RealImage3& grey, const std::vector<Swatch>& made,
                                 int half = 3) {
        RealImage3 result = lab(grey, 0.0);
        const RealImage light(result.plane(0));
        std::vector<double> scores;
        for (const Swatch& swatch : made) {
            scores.push_back((swatch.deviation + swatch.mean) * 0.5);
        }
        for (int x = 0; x < grey.width(); ++x) {
            for (int y = 0; y < grey.height(); ++y) {
                const auto [mean, deviation] = window(light, x - half, y - half, 2 * half);
                const int match = nearest((deviation + mean) * 0.5, scores);
                result.plane(1).row(x)[y] = made[static_cast<std::size_t>(match)].alpha;
                result.plane(2).row(x)[y] = made[static_cast<std::size_t>(match)].beta;
            }
        }
        greyLevels(result);
        return result;
    }
};

}  // namespace orv::test
