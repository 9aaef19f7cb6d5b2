#pragma once

#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/solver_systems.h"

namespace orv::test {

/// A system to be solved and what to call it in a message.
struct KrylovSystem {
    std::string name;
    std::unique_ptr<Matrix> A;
    RealVector b;
};

/// Symmetric and not, tridiagonal, five-diagonal and dense, from 1 to 130 unknowns; eigenvalues
/// from 1 up.
inline std::vector<KrylovSystem> krylovSystems() {
    std::vector<KrylovSystem> systems;
    const auto add = [&](const std::string& name, std::unique_ptr<Matrix> A) {
        RealVector b = wavyVector(A->Rows());
        systems.push_back(
            {name + " of " + std::to_string(A->Rows()), std::move(A), std::move(b)});
    };
    for (const int n : {1, 2, 3, 9, 40, 130}) {
        add("line", std::make_unique<FTriDiagonalMatrix>(diffusionLine(n, 2.0F)));
    }
    add("plane", std::make_unique<BandMatrix>(diffusionPlane(7, 5, 1.0F)));
    add("plane", std::make_unique<BandMatrix>(diffusionPlane(10, 12, 3.0F)));
    add("windy plane", std::make_unique<BandMatrix>(windyPlane(7, 5, 1.0F)));
    add("windy plane", std::make_unique<BandMatrix>(windyPlane(10, 12, 2.0F)));
    for (const int n : {2, 5, 20}) {
        add("dominant", std::make_unique<FullMatrix>(dominantMatrix(n)));
    }
    return systems;
}

/// A x as a value.
inline RealVector times(const Matrix& A, const RealVector& x) {
    return *A.Multiply(x, nullptr);
}

/// Whether every element is NaN.
inline bool allNan(const RealVector& u) {
    for (int i = 0; i < u.size(); ++i) {
        if (!std::isnan(u[i])) {
            return false;
        }
    }
    return true;
}

/// Whether two vectors hold the same bits, and NaN, of any kind, in the same places.
inline bool sameBitsOrNan(const RealVector& a, const RealVector& b) {
    bool same = a.size() == b.size();
    for (int i = 0; same && i < a.size(); ++i) {
        same = std::memcmp(a.data() + i, b.data() + i, sizeof(float)) == 0 ||
               (std::isnan(a[i]) && std::isnan(b[i]));
    }
    return same;
}

/// a on the diagonal, 0 beside it.
inline FullMatrix scaledIdentity(int n, float a) {
    FullMatrix A(n, 0.0F);
    for (int i = 0; i < n; ++i) {
        A.Set(i, i, a);
    }
    return A;
}

}  // namespace orv::test
