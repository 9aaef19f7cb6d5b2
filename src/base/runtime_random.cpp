#include "base/runtime_random.h"

#include <cstdint>

namespace orv {

namespace {

constinit thread_local std::uint32_t state = 1;

}  // namespace

int runtimeRandom() {
    state = 214013U * state + 2531011U;
    return static_cast<int>((state >> 16) & 0x7fffU);
}

void seedRuntimeRandom(unsigned seed) {
    state = seed;
}

unsigned runtimeRandomState() {
    return state;
}

}  // namespace orv
