// The engine's elementary functions, one value a call, without a branch, so that loops over them
// are vectorised. A kernel's .inl includes this file once, inside its anonymous namespace. The
// arrays of elementary_kernels.h and the scalars of base/elementary.h have the same bits.
//
// They use correctly rounded + - * /, and the bits of a double as an unsigned integer; so the
// results are the same everywhere. Integers become doubles, and back, through the low bits of a
// sum with a large number, which SSE2 can do for two at a time. The forms with `InRange` leave
// out what only special values need, and give the same bits inside the range that they name.

#include "base/kernels/elementary_bits.inl"

#include "base/kernels/elementary_exp.inl"

#include "base/kernels/elementary_log.inl"

#include "base/kernels/elementary_pow.inl"

#include "base/kernels/elementary_atan.inl"
