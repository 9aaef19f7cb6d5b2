#include "schemes/split/explicit_substeps.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "base/rounding.h"

namespace orv {

namespace {

int substepCount(float half, bool cflSubsteps) {
    if (!cflSubsteps) {
        return 1;
    }
    const int whole = toInt(half * -2.0);
    return whole <= -INT_MAX ? INT_MAX : 1 - whole;
}

}  // namespace

ExplicitSubsteps::ExplicitSubsteps(float tau, bool cflSubsteps)
    : half(tau * 0.5f),
      count(substepCount(half, cflSubsteps)),
      size(toFloat(static_cast<double>(half) / count)) {}

int explicitProducts(int count) {
    return std::max(count, 1);
}

std::unique_ptr<RealVector> explicitStage(const Matrix& E, int count, RealVector& rhs,
                                          std::unique_ptr<RealVector> solution) {
    solution = E.Multiply(rhs, std::move(solution));
    for (int i = 1; i < count; ++i) {
        rhs.CopyFrom(*solution);
        solution = E.Multiply(rhs, std::move(solution));
    }
    return solution;
}

}  // namespace orv
