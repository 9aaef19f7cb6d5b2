#pragma once

#include "methods/method.h"

namespace orv {

/// The size of a picture and its number of planes.
struct PlanesSize {
    int width = 0;
    int height = 0;
    int planes = 1;  ///< 1 or 3
};

/// The most bytes that a run of a method holds at the same time, the planes it is given included.
///
/// The figures are measured ones: they lie at most 30 percent above what a run takes, and never
/// below it by more than 3 percent, for pictures above a megapixel. Solvers that keep a vector
/// for each iteration are counted with all that they may keep; they often stop earlier.
///
/// Shapes:  `second` is the second picture of the methods that take one.
/// Fails:   0 for a method that isn't in the catalogue.
double peakBytes(const Method& method, const Arguments& arguments, const PlanesSize& size,
                 const PlanesSize& second = {});

/// The vectors of the length of a system that a solver keeps beside matrix, right side and
/// solution, when it runs all its iterations.
///
/// A preconditioner counts as the five diagonals of its matrix and what it adds to them.
double solverVectors(int solver, int solverIterations);

}  // namespace orv
