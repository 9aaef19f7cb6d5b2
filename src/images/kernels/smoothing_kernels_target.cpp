// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "images/kernels/smoothing_kernels.h"
// The bodies follow their table.
#include "images/kernels/smoothing_kernels.inl"
