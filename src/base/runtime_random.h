#pragma once

namespace orv {

/// The 15-bit linear congruential generator of the C runtime that the engine's random texts and
/// vectors were defined on.
///
///     seed = 214013 seed + 2531011          result = (seed >> 16) and 0x7fff
///
/// The state starts at 1, is kept per thread and never seeded by the engine.
/// Returns an integer from 0 to 32767.
int runtimeRandom();

/// Sets this thread's state: a client's way to make results repeat.
void seedRuntimeRandom(unsigned seed);

/// This thread's state, to be set again after a run that starts from a seed of its own.
unsigned runtimeRandomState();

}  // namespace orv
