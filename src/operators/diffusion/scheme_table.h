#pragma once

#include <memory>

#include "schemes/simple_anisotropic_operator.h"

namespace orv {

class Flow;

/// Scheme numbers, as the diffusion operators take them.
inline constexpr int kSchemeLod = 0;
inline constexpr int kSchemeAfi = 1;
inline constexpr int kSchemeAdi = 10;
inline constexpr int kSchemeAos = 20;
inline constexpr int kSchemeAmos = 21;
inline constexpr int kScheme2DSemi = 30;
inline constexpr int kScheme2DImplicit = 40;

/// What every scheme is made from.
struct SchemeArguments {
    int scheme;            ///< a scheme number
    int iterations;        ///< time steps
    int solverIterations;  ///< most iterations of a solve
    double tau;            ///< time step
    int solverId;          ///< index in the solver catalogue
    bool cflSubsteps;      ///< split the explicit half steps of ADI, AMOS and 2DImplicit
};

/// Makes the scheme of a number around a flow.
///
/// Fails:   null for an unknown number. The solver id is not tested: a scheme made with one
///          that has no solver must not be run.
/// Owns:    the flow stays the caller's and has to outlive the scheme.
std::unique_ptr<SimpleAnisotropicOperator> makeScheme(const SchemeArguments& arguments,
                                                      Flow& flow);

/// Whether the scheme solves the whole plane as one system; the others solve line by line.
bool isUnsplitScheme(int scheme);

/// Whether the scheme can run on planes of a size: ADI, AMOS and the two unsplit schemes need
/// two samples in each direction, the others one. An unsplit scheme counts the samples of a
/// plane in an int.
bool schemeFitsSize(int scheme, int width, int height);

/// Whether a solver can work on the matrices of a scheme. The incomplete LU of solver 41 needs
/// the five diagonals of the unsplit schemes.
bool solverFitsScheme(int solverId, int scheme);

/// Whether the number of explicit sub-steps k that a time step asks for fits an int.
///
///     half = float(tau / 2)   k = 1 - trunc(-2 half)
///
/// Schemes without sub-steps, and any scheme with `cflSubsteps` clear, take every time step.
bool subStepsFit(int scheme, double tau, bool cflSubsteps);

}  // namespace orv
