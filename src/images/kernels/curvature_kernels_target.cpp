// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "images/kernels/curvature_kernels.h"
// The bodies follow their table.
#include "images/kernels/curvature_kernels.inl"
