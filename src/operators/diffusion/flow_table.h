#pragma once

#include "schemes/flows/diffusivity.h"

namespace orv {

/// Flow numbers, as the diffusion operators take them.
inline constexpr int kFlowPeronaMalik = 1;
inline constexpr int kFlowWeickert = 10;
inline constexpr int kFlowWeickert2 = 11;
inline constexpr int kFlowWeickert3 = 12;
inline constexpr int kFlowWeickert4 = 13;
inline constexpr int kFlowVariational = 20;
inline constexpr int kFlowTotalVariation = 21;

/// The diffusivity formula of a flow number.
///
/// `kFlowWeickert` and `kFlowWeickert4` are one flow.
///
/// Fails:   never; an unknown number gives Perona and Malik's.
FlowKind flowKindOf(int flow);

}  // namespace orv
