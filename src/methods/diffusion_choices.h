#pragma once

#include <span>

#include "methods/parameter.h"

namespace orv {

/// The schemes by their names, with the numbers of the scheme table.
std::span<const Choice> schemeChoices();

/// The flows by their names, with the numbers of the flow table.
std::span<const Choice> flowChoices();

/// The gradient norms by short names, with the numbers of the gradient norm list.
std::span<const Choice> gradientNormChoices();

/// The help line of each parameter that both diffusion methods have.
inline constexpr std::string_view kSchemeHelp = "how a time step is split into linear systems";
inline constexpr std::string_view kFlowHelp = "how diffusion falls as the gradient grows";
inline constexpr std::string_view kSolverHelp =
    "solver of the linear systems, by name or number; orv solvers lists them";
inline constexpr std::string_view kSolverIterationsHelp =
    "most iterations of one solve; Thomas is direct and takes none";
inline constexpr std::string_view kTauHelp = "length of a time step";
inline constexpr std::string_view kSigmaHelp =
    "blur before the gradient is taken; up to 0.05 means none";
inline constexpr std::string_view kContrastHelp = "gradients well above this count as edges";
inline constexpr std::string_view kNormHelp = "how the gradient is measured";
inline constexpr std::string_view kStepsHelp =
    "time steps, one after another; 0 leaves diffusion out";

/// The longest time step: its number of explicit sub-steps stays small enough to finish.
inline constexpr double kLongestTau = 1000.0;

}  // namespace orv
