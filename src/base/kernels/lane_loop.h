#pragma once

// Stands in front of a loop over lanes: its iterations are independent, though the compiler
// can't see that the rows of a strip don't overlap.
#if defined(__clang__)
#define ORV_LANE_LOOP _Pragma("clang loop vectorize(assume_safety)")
#elif defined(__GNUC__)
#define ORV_LANE_LOOP _Pragma("GCC ivdep")
#else
#define ORV_LANE_LOOP
#endif

#if defined(__GNUC__)
#define ORV_PREFETCH(address) __builtin_prefetch(address)
#define ORV_PREFETCH_WRITE(address) __builtin_prefetch(address, 1)
#else
#define ORV_PREFETCH(address) static_cast<void>(address)
#define ORV_PREFETCH_WRITE(address) static_cast<void>(address)
#endif
