#include "filters/kernels/homomorphic_kernels.h"

#include "filters/kernels/homomorphic_kernels.inl"
