#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "exports/progress_window.h"
#include "images/float_image.h"
#include "schemes/full/full_2d_implicit_restoration.h"
#include "schemes/full/full_2d_semi_implicit_restoration.h"
#include "schemes/split/afi_2d_restoration.h"
#include "schemes/split/amos_2d_restoration.h"
#include "schemes/split/aos_2d_restoration.h"
#include "schemes/split/cfl_adi_2d_restoration.h"
#include "schemes/split/lod_2d_restoration.h"

namespace orv::test {

/// The seven diffusion schemes.
enum class Scheme { Lod, Afi, Adi, Aos, Amos, Semi, Implicit };

inline constexpr std::array<Scheme, 5> kLineSchemes = {Scheme::Lod, Scheme::Afi, Scheme::Adi,
                                                       Scheme::Aos, Scheme::Amos};
inline constexpr std::array<Scheme, 7> kAllSchemes = {
    Scheme::Lod,  Scheme::Afi,  Scheme::Adi,     Scheme::Aos,
    Scheme::Amos, Scheme::Semi, Scheme::Implicit};
/// The formulas of the diffusivity, and a number without one.
inline constexpr std::array<int, 7> kFlowKinds = {0, 1, 2, 10, 11, 12, 99};

/// The keyword of a scheme, for traces.
inline const char* nameOf(Scheme scheme) {
    constexpr const char* kNames[] = {"LOD",  "AFI",    "ADI",       "AOS",
                                      "AMOS", "2DSemi", "2DImplicit"};
    return kNames[static_cast<int>(scheme)];
}

/// What makeScheme() builds with when nothing else is said.
struct SchemeArguments {
    double tau = 1.0;
    int solverId = 0;
    int iterations = 1;
    int solverIterations = 50;
    bool cflSubsteps = true;
    bool updateEachStep = true;
    bool plainPath = false;
};

/// Sets the path of a line scheme; the others have one alone.
template <class Class>
std::unique_ptr<Class> onPath(std::unique_ptr<Class> scheme, bool plainPath) {
    if constexpr (std::is_base_of_v<Splitted2DRestoration, Class>) {
        scheme->setPlainPath(plainPath);
    }
    return scheme;
}

/// A scheme without an explicit part.
template <class Class>
std::unique_ptr<SimpleAnisotropicOperator> implicitScheme(Flow* flow,
                                                          const SchemeArguments& a) {
    return onPath(std::make_unique<Class>(a.solverId, a.iterations, a.solverIterations, a.tau,
                                          flow, true, a.updateEachStep),
                  a.plainPath);
}

/// A scheme with an explicit part.
template <class Class>
std::unique_ptr<SimpleAnisotropicOperator> mixedScheme(Flow* flow, const SchemeArguments& a) {
    return onPath(std::make_unique<Class>(a.solverId, a.iterations, a.solverIterations, a.tau,
                                          flow, a.cflSubsteps, true, a.updateEachStep),
                  a.plainPath);
}

/// A scheme over `flow`, which must outlive it.
inline std::unique_ptr<SimpleAnisotropicOperator> makeScheme(Scheme scheme, Flow* flow,
                                                             const SchemeArguments& a = {}) {
    switch (scheme) {
        case Scheme::Lod:
            return implicitScheme<Lod2DRestoration>(flow, a);
        case Scheme::Afi:
            return implicitScheme<Afi2DRestoration>(flow, a);
        case Scheme::Adi:
            return mixedScheme<CflAdi2DRestoration>(flow, a);
        case Scheme::Aos:
            return implicitScheme<Aos2DRestoration>(flow, a);
        case Scheme::Amos:
            return mixedScheme<Amos2DRestoration>(flow, a);
        case Scheme::Semi:
            return implicitScheme<Full2DSemiImplicitRestoration>(flow, a);
        case Scheme::Implicit:
            break;
    }
    return mixedScheme<Full2DImplicitRestoration>(flow, a);
}

/// A dense square matrix in double, by rows.
using DenseMatrix = std::vector<std::vector<double>>;

/// A plane in double; index x + w y.
struct DensePlane {
    int w = 0;
    int h = 0;
    std::vector<double> values;

    DensePlane(int width, int height)
        : w(width), h(height), values(static_cast<std::size_t>(width * height)) {}
    explicit DensePlane(const FloatImage& plane) : DensePlane(plane.width(), plane.height()) {
        for (int x = 0; x < w; ++x) {
            for (int y = 0; y < h; ++y) {
                at(x, y) = plane.row(x)[y];
            }
        }
    }
    double& at(int x, int y) { return values[static_cast<std::size_t>(x + w * y)]; }
    double at(int x, int y) const { return values[static_cast<std::size_t>(x + w * y)]; }
};

/// Adds the coupling of p and q by the mean of their diffusivities.
inline void couple(DenseMatrix& A, int p, int q, double gp, double gq) {
    const auto i = static_cast<std::size_t>(p);
    const auto j = static_cast<std::size_t>(q);
    A[i][j] += (gp + gq) / 2.0;
    A[i][i] -= (gp + gq) / 2.0;
}

/// The operator of the whole plane along x, along y or along both, of order w h.
inline DenseMatrix denseOperator(const DensePlane& g, bool alongX, bool alongY) {
    const auto n = static_cast<std::size_t>(g.w * g.h);
    DenseMatrix A(n, std::vector<double>(n, 0.0));
    for (int y = 0; y < g.h; ++y) {
        for (int x = 0; x < g.w; ++x) {
            const int p = x + g.w * y;
            if (alongX && x + 1 < g.w) {
                couple(A, p, p + 1, g.at(x, y), g.at(x + 1, y));
                couple(A, p + 1, p, g.at(x + 1, y), g.at(x, y));
            }
            if (alongY && y + 1 < g.h) {
                couple(A, p, p + g.w, g.at(x, y), g.at(x, y + 1));
                couple(A, p + g.w, p, g.at(x, y + 1), g.at(x, y));
            }
        }
    }
    return A;
}

/// (I + t A) u.
inline DensePlane denseProduct(const DenseMatrix& A, double t, const DensePlane& u) {
    DensePlane result = u;
    for (std::size_t i = 0; i < A.size(); ++i) {
        for (std::size_t j = 0; j < A.size(); ++j) {
            result.values[i] += t * A[i][j] * u.values[j];
        }
    }
    return result;
}

/// (I - t A)^-1 u by Gauss elimination with partial pivoting.
inline DensePlane denseSolution(const DenseMatrix& A, double t, DensePlane u) {
    const std::size_t n = A.size();
    DenseMatrix m = A;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            m[i][j] = (i == j ? 1.0 : 0.0) - t * A[i][j];
        }
    }
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < n; ++i) {
            if (std::fabs(m[i][k]) > std::fabs(m[pivot][k])) {
                pivot = i;
            }
        }
        std::swap(m[k], m[pivot]);
        std::swap(u.values[k], u.values[pivot]);
        for (std::size_t i = k + 1; i < n; ++i) {
            const double factor = m[i][k] / m[k][k];
            if (factor == 0.0) {
                continue;
            }
            for (std::size_t j = k; j < n; ++j) {
                m[i][j] -= factor * m[k][j];
            }
            u.values[i] -= factor * u.values[k];
        }
    }
    for (std::size_t k = n; k-- > 0;) {
        for (std::size_t j = k + 1; j < n; ++j) {
            u.values[k] -= m[k][j] * u.values[j];
        }
        u.values[k] /= m[k][k];
    }
    return u;
}

/// The mean of two planes.
inline DensePlane meanOf(const DensePlane& a, const DensePlane& b) {
    DensePlane result = a;
    for (std::size_t i = 0; i < result.values.size(); ++i) {
        result.values[i] = (a.values[i] + b.values[i]) / 2.0;
    }
    return result;
}

/// One step of a scheme on `u` with the diffusivity `g`, by dense algebra in double. It shares
/// nothing with the engine but the formula of the step.
inline DensePlane denseStep(Scheme scheme, const DensePlane& u, const DensePlane& g, double tau,
                            bool cflSubsteps) {
    const DenseMatrix Ax = denseOperator(g, true, false);
    const DenseMatrix Ay = denseOperator(g, false, true);
    const double half = tau / 2.0;
    const int count = cflSubsteps ? 1 + static_cast<int>(tau) : 1;
    const auto explicitPart = [&](const DenseMatrix& A, DensePlane v) {
        for (int i = 0; i < count; ++i) {
            v = denseProduct(A, half / count, v);
        }
        return v;
    };
    const auto crankNicolson = [&](const DenseMatrix& A, const DensePlane& v) {
        return denseSolution(A, half, explicitPart(A, v));
    };
    switch (scheme) {
        case Scheme::Lod:
            return denseSolution(Ay, tau, denseSolution(Ax, tau, u));
        case Scheme::Afi:
            return meanOf(denseSolution(Ay, tau, denseSolution(Ax, tau, u)),
                          denseSolution(Ax, tau, denseSolution(Ay, tau, u)));
        case Scheme::Adi:
            return denseSolution(
                Ay, half, explicitPart(Ax, denseSolution(Ax, half, explicitPart(Ay, u))));
        case Scheme::Aos:
            return meanOf(denseSolution(Ax, 2.0 * tau, u), denseSolution(Ay, 2.0 * tau, u));
        case Scheme::Amos:
            return meanOf(crankNicolson(Ay, crankNicolson(Ax, u)),
                          crankNicolson(Ax, crankNicolson(Ay, u)));
        case Scheme::Semi:
            return denseSolution(denseOperator(g, true, true), tau, u);
        case Scheme::Implicit:
            break;
    }
    const DenseMatrix A = denseOperator(g, true, true);
    return denseSolution(A, half, denseProduct(A, half / count, u));
}

/// The largest difference of two planes; infinite when one holds a NaN.
inline double largestDifference(const FloatImage& a, const DensePlane& b) {
    double largest = 0.0;
    for (int x = 0; x < b.w; ++x) {
        for (int y = 0; y < b.h; ++y) {
            const double difference = std::fabs(a.row(x)[y] - b.at(x, y));
            if (!(difference <= largest)) {
                largest = std::isnan(difference) ? HUGE_VAL : difference;
            }
        }
    }
    return largest;
}

/// What a printName() writes.
template <class Class>
std::string printedName(const Class& object) {
    std::FILE* file = std::tmpfile();
    object.printName(file);
    std::rewind(file);
    char text[128] = {};
    const std::size_t length = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    return std::string(text, length);
}

/// Sets the progress window for the length of a scope and keeps what a callback is told.
class ProgressRecorder {
  public:
    ProgressRecorder(int low, int high) : before_(progressWindow()) {
        values().clear();
        progressWindow() = ProgressWindow{&record, low, high};
    }
    ~ProgressRecorder() { progressWindow() = before_; }
    ProgressRecorder(const ProgressRecorder&) = delete;
    ProgressRecorder& operator=(const ProgressRecorder&) = delete;

    /// The values of all calls so far, in order.
    static std::vector<int>& values() {
        static std::vector<int> list;
        return list;
    }

  private:
    static void ORV_PROGRESS_CALL record(int value) { values().push_back(value); }

    ProgressWindow before_;
};

}  // namespace orv::test
