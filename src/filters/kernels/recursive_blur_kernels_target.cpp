#include "filters/kernels/recursive_blur_kernels.h"

#include "filters/kernels/recursive_blur_kernels.inl"
