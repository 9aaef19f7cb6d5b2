// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "wavelets/kernels/shrink_kernels.h"
// The bodies follow their table.
#include "wavelets/kernels/shrink_kernels.inl"
