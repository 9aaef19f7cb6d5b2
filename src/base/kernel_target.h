#pragma once

namespace orv {

/// The instruction sets that kernels are compiled for. Every target gives the same bits; a
/// later one is faster where the processor has it.
enum class KernelTarget { Generic, Avx2, Avx512 };

inline constexpr int kKernelTargetCount = 3;

}  // namespace orv
