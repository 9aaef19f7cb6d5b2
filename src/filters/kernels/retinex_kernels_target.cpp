// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "filters/kernels/retinex_kernels.h"

#include "base/kernels/lane_loop.h"
// The bodies follow their table.
#include "filters/kernels/retinex_kernels.inl"
