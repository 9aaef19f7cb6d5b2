#include "operators/kernels/susan_kernels.h"

#include "operators/kernels/susan_kernels.inl"
