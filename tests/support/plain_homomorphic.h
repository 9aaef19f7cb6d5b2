#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "base/elementary.h"
#include "images/real_image.h"

namespace orv::test {

/// The elementary functions that a plain formulation takes.
struct ElementaryFunctions {
    double (*log)(double);
    double (*exp)(double);
    double (*pow)(double, double);
};

inline constexpr ElementaryFunctions kOwnFunctions = {elementaryLog, elementaryExp,
                                                      elementaryPow};

/// Those of the C++ library.
inline ElementaryFunctions libraryFunctions() {
    return {[](double x) { return std::log(x); }, [](double x) { return std::exp(x); },
            [](double x, double y) { return std::pow(x, y); }};
}

/// The homomorphic filter sample by sample as its formulas stand, blur included.
class PlainHomomorphic {
  public:
    PlainHomomorphic(int mode, double sigma, double gamma, ElementaryFunctions functions)
        : mode_(mode), gamma_(gamma), f_(functions) {
        const double s = sigma < 0.5 ? 0.5 : sigma;
        const double q =
            s > 2.5 ? 0.98711 * s - 0.9833 : 3.97156 - 4.14554 * std::sqrt(1.0 - 0.26891 * s);
        const double b0 = 1.57825 + 2.44413 * q + 1.4281 * (q * q) + 0.422205 * (q * q * q);
        const double b1 = 2.44413 * q + 2.85619 * (q * q) + 1.26661 * (q * q * q);
        const double b2 = -(1.4281 * (q * q) + 1.26661 * (q * q * q));
        const double b3 = 0.422205 * (q * q * q);
        gain_ = 1.0 - (b1 + b2 + b3) / b0;
        feedback_[0] = b1 / b0;
        feedback_[1] = b2 / b0;
        feedback_[2] = b3 / b0;
    }

    RealImage apply(const RealImage& source) const {
        RealImage target(source);
        forEach(target, [&](double& sample) { sample = f_.log(sample + 0.0); });
        const RealImage low = blurred(target);
        for (std::size_t i = 0; i < target.sampleCount(); ++i) {
            target.data()[i] = finished(source.data()[i], target.data()[i], low.data()[i]);
        }
        return target;
    }

    RealImage blurred(const RealImage& source) const {
        RealImage target(source);
        for (int y = 0; y < target.height(); ++y) {
            blurLine(target.data() + y, target.width(),
                     static_cast<std::size_t>(target.height()));
        }
        for (int x = 0; x < target.width(); ++x) {
            blurLine(target.row(x), target.height(), 1);
        }
        return target;
    }

  private:
    template <class Change>
    static void forEach(RealImage& plane, Change change) {
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            change(plane.data()[i]);
        }
    }

    double finished(double s, double logarithm, double low) const {
        switch (mode_) {
            case 2:
                return logarithm - low;
            case 4:
                return f_.exp(low);
            case 5:
                return low;
            case 8:
                return compressed(s, f_.exp(low));
            default:
                return f_.exp(logarithm - low);
        }
    }

    double compressed(double s, double light) const {
        const double g = 1.0 / gamma_;
        double m = light;
        if (m < 0.0) {
            m = 0.0;
        }
        if (m < s) {
            m = s;
        }
        double r = s / m;
        if (r < 0.0) {
            r = 0.0;
        }
        if (r > 1.0) {
            r = 1.0;
        }
        return f_.pow(m * 0.00392156862745098, g) * 255.0 * r;
    }

    void blurLine(double* line, int count, std::size_t step) const {
        const auto n = static_cast<std::size_t>(count);
        std::vector<double> f(n + 3);
        std::vector<double> g(n + 3);
        f[0] = line[2 * step];
        f[1] = line[step];
        f[2] = line[0];
        for (std::size_t i = 0; i < n; ++i) {
            f[i + 3] = gain_ * line[i * step] + feedback_[0] * f[i + 2] +
                       feedback_[1] * f[i + 1] + feedback_[2] * f[i];
        }
        g[n + 2] = f[n];
        g[n + 1] = f[n + 1];
        g[n] = f[n + 2];
        for (std::size_t i = n; i-- > 0;) {
            g[i] = gain_ * f[i + 3] + feedback_[0] * g[i + 1] + feedback_[1] * g[i + 2] +
                   feedback_[2] * g[i + 3];
            line[i * step] = g[i];
        }
    }

    int mode_;
    double gamma_;
    ElementaryFunctions f_;
    double gain_;
    double feedback_[3];
};

}  // namespace orv::test
