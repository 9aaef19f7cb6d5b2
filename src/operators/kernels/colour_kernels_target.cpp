// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "operators/kernels/colour_kernels.h"
// The bodies follow their table.
#include "operators/kernels/colour_kernels.inl"
