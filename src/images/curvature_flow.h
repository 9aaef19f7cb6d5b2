#pragma once

#include "images/real_image.h"
#include "images/real_image3.h"

namespace orv {

/// The curvature flows on one plane.
///
/// With fx, fy, fxx, fyy, fxy the central differences of the plane, they move a sample by
///
///     N = (1 + fy fy) fxx - 2 fx fy fxy + (1 + fx fx) fyy      D = 1 + fx fx + fy fy
///
/// over a power of D. The exponents stand with these names as they are documented. The power 1.5
/// is D sqrt(D), whose bits do not depend on how a library takes powers.
///
/// Source:  [SochenKimmelMalladi1998], [ElFallahFord1994]
enum class CurvatureFlow {
    Beltrami,       ///< N / (D D)
    PeronaMalik,    ///< N / D to the power 1.5
    MeanCurvature,  ///< N / D
};

// Steps. All samples move at once: terms are taken from the plane as it was before the step.
// Results are limited to 0 and 255. Explicit steps: from coeff 0.25 on a flat checkerboard
// grows instead of fading.

/// sample = coeff term + sample, for x from 1 to width - 2 and y from 1 to height - 2.
///
/// Cost:    one pass in place, three columns of work memory.
void curvatureStep(CurvatureFlow flow, double coeff, RealImage& plane);

/// sample = coeff term + cgrad G + sample, for x from 2 to width - 3 and y from 2 to height - 3.
///
///     g = 1 / D
///     G = (g(x+1, y) - g(x-1, y)) / 2 fx + (g(x, y+1) - g(x, y-1)) / 2 fy
///
/// Cost:    one pass in place, five columns of work memory.
/// Source:  [CasellesKimmelSapiro1997]
void geodesicCurvatureStep(CurvatureFlow flow, double coeff, double cgrad, RealImage& plane);

/// One step of the Laplace-Beltrami operator of the picture seen as a surface in (x, y, R, G, B):
/// the channels share their metric, so that edges of all channels move together.
///
/// With p, q, a, m, c the central differences fx, fy, fxx, fxy, fyy of a channel and sums over
/// the channels:
///
///     g11 = 1 + sum p p     g22 = 1 + sum q q     g12 = sum p q     det = g11 g22 - g12 g12
///     detx = g22x g11 + g11x g22 - 2 g12x g12     dety = g11y g22 + g22y g11 - 2 g12y g12
///     increment = [(g22 a - g12 m) + (g22x p - g12x q) + (g11 c - g12 m) + (g11y q - g12y p)
///                  - ((g11 q - g12 p) dety + (g22 p - g12 q) detx) / (2 det)] / det
///
/// for x from 2 to width - 3 and y from 2 to height - 3; elsewhere and where det is at most 0
/// the increment is 0. Then every sample becomes coeff increment + sample.
///
/// Cost:    one pass in place, six columns of work memory.
/// Source:  [SochenKimmelMalladi1998]
void fullColorBeltramiStep(double coeff, RealImage3& planes);

// Drivers. They write " %d" with the number of the iteration now and then, which is the whole of
// their reporting.

/// Runs `iterations` iterations of curvatureStep and writes the number of every tenth one, then
/// "\nrestauration done\n".
///
/// The terms of an iteration are taken from a copy that is made at the end of each iteration
/// and starts as zero, so that the first iteration limits the samples and moves nothing.
///
/// Quirk:   curvature-first-iteration
void runCurvatureFlow(CurvatureFlow flow, double coeff, int iterations, RealImage& plane);

/// The same with geodesicCurvatureStep.
///
/// Quirk:   curvature-first-iteration
void runGeodesicCurvatureFlow(CurvatureFlow flow, double coeff, double cgrad, int iterations,
                              RealImage& plane);

/// Runs `iterations` iterations of fullColorBeltramiStep, all of them effective, and writes the
/// number of every fifth one, then "\n".
void runFullColorBeltrami(double coeff, int iterations, RealImage3& planes);

}  // namespace orv
