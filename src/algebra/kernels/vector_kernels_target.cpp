#include "algebra/kernels/vector_kernels.h"

#include "algebra/kernels/vector_kernels.inl"
