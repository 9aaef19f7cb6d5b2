#pragma once

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "base/elementary.h"
#include "images/real_image.h"

namespace orv::test {

/// The variational Retinex as its formulas tell it: a plane for each quantity, a test for each
/// border, one sample at a time.
class PlainRetinex {
  public:
    PlainRetinex(double gamma, double alpha, double beta, int levels)
        : gamma_(gamma), alpha_(alpha), beta_(beta), levels_(levels) {}

    /// The result for samples above 0; `passesPerLevel` 4 is the method.
    RealImage apply(const RealImage& source, int passesPerLevel = 4) const {
        std::vector<RealImage> s = pyramidOf(logarithm(source), levels_);
        auto l = std::make_unique<RealImage>(s.back());
        l->fill(largest(s.back()));
        for (int k = levels_ - 1; k >= 0; --k) {
            for (int pass = 0; pass < passesPerLevel * k; ++pass) {
                improve(*l, s[static_cast<std::size_t>(k)]);
            }
            if (k > 0) {
                l = expanded(*l, s[static_cast<std::size_t>(k) - 1]).clone();
            }
        }
        return divided(source, *l);
    }

    static std::vector<RealImage> pyramidOf(const RealImage& plane, int levels) {
        std::vector<RealImage> result;
        result.reserve(static_cast<std::size_t>(levels));
        result.emplace_back(plane);
        for (int k = 1; k < levels; ++k) {
            const RealImage q = smoothed(result.back());
            const RealImage& p = result.back();
            RealImage next(p.width() / 2, p.height() / 2);
            for (int i = 0; i < next.width(); ++i) {
                for (int j = 0; j < next.height(); ++j) {
                    next.row(i)[j] = q.row(2 * i)[2 * j];
                }
            }
            result.emplace_back(next);
        }
        return result;
    }

    static RealImage laplacian(const RealImage& p) {
        RealImage result(p.width(), p.height());
        const int lastX = p.width() - 1;
        const int lastY = p.height() - 1;
        for (int x = 0; x <= lastX; ++x) {
            for (int y = 0; y <= lastY; ++y) {
                const bool innerX = x > 0 && x < lastX;
                const bool innerY = y > 0 && y < lastY;
                double value = 0.0;
                if (innerX && innerY) {
                    value = p.row(x)[y - 1] + p.row(x)[y + 1] + p.row(x + 1)[y] +
                            p.row(x - 1)[y] - 4.0 * p.row(x)[y];
                } else if (innerX) {
                    value = p.row(x - 1)[y] + p.row(x + 1)[y] - 2.0 * p.row(x)[y];
                } else if (innerY) {
                    value = p.row(x)[y - 1] + p.row(x)[y + 1] - 2.0 * p.row(x)[y];
                }
                result.row(x)[y] = value;
            }
        }
        return result;
    }

    static RealImage expanded(const RealImage& l, const RealImage& finer) {
        const int w = l.width();
        const int h = l.height();
        RealImage result(finer.width(), finer.height());
        double v = 0.0;
        for (int i = 0; i < finer.width(); ++i) {
            for (int j = 0; j < finer.height(); ++j) {
                const int a = i / 2;
                const int b = j / 2;
                const bool evenI = i % 2 == 0;
                const bool evenJ = j % 2 == 0;
                if (evenI && evenJ && a < w && b < h) {
                    v = l.row(a)[b];
                } else if (!evenI && evenJ && a < w - 1 && b < h) {
                    v = (l.row(a + 1)[b] + l.row(a)[b]) * 0.5;
                } else if (evenI && !evenJ && b < h - 1 && a < w) {
                    v = (l.row(a)[b + 1] + l.row(a)[b]) * 0.5;
                } else if (!evenI && !evenJ && a < w - 1 && b < h - 1) {
                    v = (l.row(a)[b] + l.row(a)[b + 1] + l.row(a + 1)[b + 1] +
                         l.row(a + 1)[b]) *
                        0.25;
                }
                if (v < finer.row(a)[b]) {
                    v = finer.row(a)[b];
                }
                result.row(i)[j] = v;
            }
        }
        return result;
    }

    /// One pass on a level.
    void improve(RealImage& l, const RealImage& s) const {
        const RealImage d = laplacian(s);
        const RealImage a = laplacian(l);
        RealImage g(l.width(), l.height());
        for (std::size_t i = 0; i < l.sampleCount(); ++i) {
            g.data()[i] = a.data()[i] + (l.data()[i] - s.data()[i]) * alpha_ -
                          (a.data()[i] - d.data()[i]) * beta_;
        }
        const double n = static_cast<double>(l.sampleCount());
        const double mA = sumOfProducts(g, g) / n;
        const double mB = -sumOfProducts(g, laplacian(g)) / n;
        double mu = std::fabs(mA / (alpha_ * mA + (beta_ + 1.0) * mB));
        if (mu > 0.2) {
            mu = 0.2;
        }
        for (std::size_t i = 0; i < l.sampleCount(); ++i) {
            const double v = l.data()[i] + mu * g.data()[i];
            l.data()[i] = v > s.data()[i] ? v : s.data()[i];
        }
    }

    static RealImage logarithm(const RealImage& source) {
        RealImage result(source);
        for (std::size_t i = 0; i < result.sampleCount(); ++i) {
            result.data()[i] = elementaryLog(result.data()[i] + 0.0);
        }
        return result;
    }

    /// In eight lanes that join pairwise.
    static double sumOfProducts(const RealImage& a, const RealImage& b) {
        double lanes[8] = {};
        for (std::size_t i = 0; i < a.sampleCount(); ++i) {
            lanes[i % 8] += a.data()[i] * b.data()[i];
        }
        return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
               ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
    }

  private:
    static double largest(const RealImage& p) {
        double most = p.data()[0];
        for (std::size_t i = 1; i < p.sampleCount(); ++i) {
            if (p.data()[i] > most) {
                most = p.data()[i];
            }
        }
        return most;
    }

    // The weights over the neighbours that exist, in the order of the formula.
    static RealImage smoothed(const RealImage& p) {
        RealImage q(p);
        const int lastX = p.width() - 1;
        const int lastY = p.height() - 1;
        const auto has = [&](int x, int y) {
            return x >= 0 && x <= lastX && y >= 0 && y <= lastY;
        };
        const int cross[4][2] = {{0, 1}, {0, -1}, {1, 0}, {-1, 0}};
        const int corners[4][2] = {{1, 1}, {-1, 1}, {1, -1}, {-1, -1}};
        for (int x = 0; x <= lastX; ++x) {
            for (int y = 0; y <= lastY; ++y) {
                double beside = 0.0;
                for (const auto& d : cross) {
                    beside += has(x + d[0], y + d[1]) ? p.row(x + d[0])[y + d[1]] : 0.0;
                }
                double sum = 4.0 * p.row(x)[y] + 2.0 * beside;
                for (const auto& d : corners) {
                    sum += has(x + d[0], y + d[1]) ? p.row(x + d[0])[y + d[1]] : 0.0;
                }
                const bool edgeX = x == 0 || x == lastX;
                const bool edgeY = y == 0 || y == lastY;
                const double factor = edgeX && edgeY   ? 0.1111111111111111
                                      : edgeX || edgeY ? 0.08333333333333333
                                                       : 0.0625;
                q.row(x)[y] = sum * factor;
            }
        }
        return q;
    }

    RealImage divided(const RealImage& source, const RealImage& l) const {
        RealImage result(source);
        const double e = 1.0 - 1.0 / gamma_;
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            const double v = source.data()[i] / elementaryPow(elementaryExp(l.data()[i]), e);
            result.data()[i] = v > 1.0 ? 1.0 : v;
        }
        return result;
    }

    double gamma_;
    double alpha_;
    double beta_;
    int levels_;
};

}  // namespace orv::test
