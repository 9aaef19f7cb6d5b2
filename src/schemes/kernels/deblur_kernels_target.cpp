// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "schemes/kernels/deblur_kernels.h"
// The bodies follow their table.
#include "schemes/kernels/deblur_kernels.inl"
