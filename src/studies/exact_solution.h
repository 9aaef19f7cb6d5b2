#pragma once

#include <vector>

#include "studies/study_system.h"

namespace orv {

/// The solution of all systems in double precision, by none of the solvers of the catalogue.
///
/// Lines by Gaussian elimination; whole planes by conjugate gradients with the main diagonal as
/// preconditioner, restarted from the true residual as long as it at least halves.
///
/// Domain:  symmetric positive definite systems, as those of the diffusion schemes are.
/// Fails:   never tells; `StudySystem::residual` of the result does.
/// Cost:    six vectors of doubles; for planes about 17 sqrt(1 + 8 tau) products with A.
std::vector<double> exactSolution(const StudySystem& system);

}  // namespace orv
