#include "schemes/kernels/diffusivity_kernels.h"

#include "schemes/kernels/diffusivity_kernels.inl"
