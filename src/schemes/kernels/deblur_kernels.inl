// Bodies of the table in deblur_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

void rightSide(const DeblurPlanes& planes, float lambda, float tau, std::size_t count,
               float* right) {
    const float* u = planes.u;
    const float* v = planes.v;
    const float* w = planes.w;
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        right[i] = u[i] - (v[i] - w[i]) * lambda * tau;
    }
}

void addAndClamp(const float* addend, float lowest, float highest, std::size_t count,
                 float* sum) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        const float added = sum[i] + addend[i];
        const float raised = added < lowest ? lowest : added;
        sum[i] = raised >= highest ? highest : raised;
    }
}

}  // namespace

extern const DeblurKernels kDeblurKernels;
constinit const DeblurKernels kDeblurKernels = {rightSide, addAndClamp};

}  // namespace orv::ORV_KERNEL_NAMESPACE
