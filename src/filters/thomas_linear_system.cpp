#include "filters/thomas_linear_system.h"

#include "base/text_output.h"

namespace orv {

ThomasLinearSystem::ThomasLinearSystem(int n)
    : LinearSystem(n), spare_(n - 1), pivots_(n), multipliers_(n - 1), forward_(n) {}

ThomasLinearSystem::~ThomasLinearSystem() = default;

void ThomasLinearSystem::factorise() {
    const float* const super = matrix_->upper().data();
    const float* const diag = matrix_->main().data();
    const float* const sub = matrix_->lower().data();
    const float* const b = b_->data();
    float* const x = x_->data();
    float* const pivots = pivots_.data();
    float* const multipliers = multipliers_.data();
    float* const forward = forward_.data();

    pivots[0] = diag[0];
    for (int i = 1; i < n_; ++i) {
        multipliers[i - 1] = sub[i - 1] / pivots[i - 1];
        pivots[i] = diag[i] - super[i - 1] * multipliers[i - 1];
    }
    forward[0] = b[0];
    for (int i = 1; i < n_; ++i) {
        forward[i] = b[i] - multipliers[i - 1] * forward[i - 1];
    }
    x[n_ - 1] = forward[n_ - 1] / pivots[n_ - 1];
    for (int i = n_ - 2; i >= 0; --i) {
        x[i] = (forward[i] - super[i] * x[i + 1]) / pivots[i];
    }
}

void ThomasLinearSystem::print(std::FILE* file) const {
    printTextTo(file, "Thomas ");
    LinearSystem::print(file);
}

void ThomasLinearSystem::print() const {
    printText("Thomas ");
    LinearSystem::print();
}

}  // namespace orv
