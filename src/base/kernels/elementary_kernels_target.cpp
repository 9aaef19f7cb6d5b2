#include "base/kernels/elementary_kernels.h"

#include "base/kernels/elementary_kernels.inl"
