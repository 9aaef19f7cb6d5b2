#include "schemes/kernels/line_kernels.h"

#include "schemes/kernels/line_kernels.inl"
