#include "filters/kernels/implicit_blur_kernels.h"

#include "filters/kernels/implicit_blur_kernels.inl"
