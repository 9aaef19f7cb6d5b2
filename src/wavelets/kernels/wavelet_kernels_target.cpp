// Compiled once per kernel target; ORV_KERNEL_NAMESPACE is set by the build.
#include "wavelets/kernels/wavelet_kernels.h"
// The bodies follow their table.
#include "wavelets/kernels/wavelet_kernels.inl"
