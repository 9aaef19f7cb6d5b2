#include "operators/kernels/shock_kernels.h"

#include "operators/kernels/shock_kernels.inl"
