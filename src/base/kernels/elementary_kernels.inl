// Bodies of the table in elementary_kernels.h: plain loops, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

template <double (*function)(double)>
void each(const double* x, double* y, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = function(x[i]);
    }
}

void powEach(const double* x, double exponent, double* y, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = powOf(x[i], exponent);
    }
}

}  // namespace

extern const ElementaryKernels kElementaryKernels;
constinit const ElementaryKernels kElementaryKernels = {
    each<expOf>, each<logOf>, each<log10Of>, each<exp10Of>, each<atanOf>, powEach};

}  // namespace orv::ORV_KERNEL_NAMESPACE
