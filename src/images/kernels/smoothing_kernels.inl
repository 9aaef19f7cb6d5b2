// Bodies of the table in smoothing_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

void sumThree(const float* const* taps, const float* weights, float divisor, std::size_t count,
              float* out) {
    const float* first = taps[0];
    const float* middle = taps[1];
    const float* last = taps[2];
    const float a = weights[0];
    const float b = weights[1];
    const float c = weights[2];
    ORV_LANE_LOOP
    for (std::size_t s = 0; s < count; ++s) {
        out[s] = (c * last[s] + a * first[s] + b * middle[s]) / divisor;
    }
}

void sumFive(const float* const* taps, const float* weights, float divisor, std::size_t count,
             float* out) {
    const float* t0 = taps[0];
    const float* t1 = taps[1];
    const float* t2 = taps[2];
    const float* t3 = taps[3];
    const float* t4 = taps[4];
    const float w0 = weights[0];
    const float w1 = weights[1];
    const float w2 = weights[2];
    const float w3 = weights[3];
    const float w4 = weights[4];
    ORV_LANE_LOOP
    for (std::size_t s = 0; s < count; ++s) {
        out[s] = (w0 * t0[s] + w1 * t1[s] + w2 * t2[s] + w3 * t3[s] + w4 * t4[s]) / divisor;
    }
}

void sumSeven(const float* const* taps, const float* weights, float divisor, std::size_t count,
              float* out) {
    const float* t0 = taps[0];
    const float* t1 = taps[1];
    const float* t2 = taps[2];
    const float* t3 = taps[3];
    const float* t4 = taps[4];
    const float* t5 = taps[5];
    const float* t6 = taps[6];
    const float w0 = weights[0];
    const float w1 = weights[1];
    const float w2 = weights[2];
    const float w3 = weights[3];
    const float w4 = weights[4];
    const float w5 = weights[5];
    const float w6 = weights[6];
    ORV_LANE_LOOP
    for (std::size_t s = 0; s < count; ++s) {
        out[s] = (w0 * t0[s] + w1 * t1[s] + w2 * t2[s] + w3 * t3[s] + w4 * t4[s] + w5 * t5[s] +
                  w6 * t6[s]) /
                 divisor;
    }
}

}  // namespace

extern const SmoothingKernels kSmoothingKernels;
constinit const SmoothingKernels kSmoothingKernels = {sumThree, sumFive, sumSeven};

}  // namespace orv::ORV_KERNEL_NAMESPACE
