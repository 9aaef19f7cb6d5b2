#pragma once

#include <memory>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "images/float_image.h"
#include "solvers/linear_solver.h"
#include "studies/double_band.h"

namespace orv {

/// What makes the linear systems of a time step; the numbers are those of the diffusion operators.
///
/// Units:   tau in pixels squared, sigma in pixels, contrast in grey levels.
/// Domain:  scheme LOD, AOS or 2DSemi; gradientNormId 0 to 5.
struct StudySettings {
    int scheme;
    double tau;
    double sigma;
    double contrast;
    int flow;
    int gradientNormId;
};

/// What a solver made of all systems.
struct StudySolution {
    std::vector<float> samples;  ///< as StudySystem orders them; empty if a solve gave none
    double seconds = 0.0;        ///< time of the solves alone
    int converged = 0;           ///< systems whose solver says that its stopping test held
};

/// The linear systems that the first time step of a diffusion scheme solves on a plane, built
/// by the flow and solved in the order of the scheme.
///
/// 2DSemi has one system of w h unknowns, I - tau A. LOD has one for each row, I - tau A_x, and
/// AOS too, with 2 tau; their columns, which follow the rows, are no part of it. The right sides
/// are the samples of the plane. All vectors here hold the pixel (x, y) at x + w y.
class StudySystem {
  public:
    /// Builds all matrices and right sides.
    ///
    /// Shapes:  a plane that `schemeFitsSize` allows.
    /// Cost:    about 24 bytes a sample for 2DSemi, 16 for the rows.
    StudySystem(const FloatImage& plane, const StudySettings& settings);

    /// Number of systems.
    int systems() const { return static_cast<int>(parts_.size()); }
    /// Unknowns of all systems together.
    int unknowns() const { return unknowns_; }

    /// Solves all systems with one solver, as the scheme does.
    ///
    /// 2DSemi and LOD start each system from its right side, AOS starts each row from the
    /// solution of the row before and the first one from zeros.
    StudySolution solve(LinearSolver& solver) const;

    /// The right sides.
    std::vector<float> rightSide() const;

    /// The Euclidean norm of b - A u over all systems, in double.
    double residual(const std::vector<float>& u) const;
    double residual(const std::vector<double>& u) const;

    /// The systems one after another, in double.
    const std::vector<DoubleBand>& bands() const { return bands_; }

  private:
    struct Part {
        std::unique_ptr<Matrix> A;
        std::unique_ptr<RealVector> b;
    };

    void buildRows(const FloatImage& plane, const StudySettings& settings);
    void buildPlane(const FloatImage& plane, const StudySettings& settings);

    std::vector<Part> parts_;
    std::vector<DoubleBand> bands_;
    int unknowns_;
    bool startsFromLineBefore_;
};

}  // namespace orv
