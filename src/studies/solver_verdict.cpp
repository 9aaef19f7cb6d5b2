#include "studies/solver_verdict.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

namespace orv {

namespace {

/// A recursive residual drifts from the true one by some roundings of the solution.
constexpr double kRoundingSlack = 10.0;

/// A solver that takes away less than half of the picture's own error hasn't solved anything.
constexpr double kLeastGain = 0.5;

std::string shortNumber(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2g", value);
    return text.data();
}

/// The residuals that count as a solver's tolerance.
struct Tolerances {
    double absolute;  ///< 0.0001 a system, or what rounding leaves of the exact solution
    double relative;  ///< for solvers that compare with the right side
};

Tolerances tolerancesOf(const SolverStudy& study) {
    const double stated = kStudyTolerance * std::sqrt(static_cast<double>(study.systems));
    const double absolute = kRoundingSlack * std::max(stated, study.rounded.residual);
    return {absolute, std::max(absolute, 2.0 * kStudyTolerance * study.rightSideNorm)};
}

void judgeBreakdown(const SolverCurve& curve, SolverRecordOfStudy& record) {
    record.status = SolverStatus::BrokeDown;
    record.iterations = curve.settledAt();
    record.reason = "at " + std::to_string(record.iterations) + " iteration" +
                    (record.iterations == 1 ? "" : "s");
    const SolverCurve::Run* best = nullptr;
    for (const auto& [limit, run] : curve.runs()) {
        if (run.finite && (best == nullptr || run.point.residual < best->point.residual)) {
            best = &run;
        }
    }
    if (best != nullptr) {
        record.reason += "; residual " + shortNumber(best->point.residual) + " at " +
                         std::to_string(best->point.limit);
    }
}

std::string wrongReason(const SolverCurve::Run& last, const SolverStudy& study) {
    if (!last.moved) {
        return "gives the picture back unchanged";
    }
    return last.point.differenceMax > study.start.differenceMax
               ? "farther from the solution than the picture itself"
               : "hardly nearer to the solution than the picture itself";
}

/// The shortest time of the runs that did the work of the last.
double shortestTime(const SolverCurve& curve) {
    double seconds = curve.last().point.seconds;
    for (const auto& [limit, run] : curve.runs()) {
        if (limit >= curve.settledAt()) {
            seconds = std::min(seconds, run.point.seconds);
        }
    }
    return seconds;
}

}  // namespace

void judgeSolver(const SolverCurve& curve, const SolverStudy& study, int solverIterations,
                 SolverRecordOfStudy& record) {
    const Tolerances tolerances = tolerancesOf(study);
    const SolverCurve::Run& last = curve.last();
    record.direct = curve.direct();
    record.last = last.point;
    record.last.seconds = shortestTime(curve);
    for (const auto& [limit, run] : curve.runs()) {
        record.curve.push_back(run.point);
    }
    if (!last.finite) {
        judgeBreakdown(curve, record);
        return;
    }
    record.iterations = record.direct ? 0 : curve.settledAt();
    const double residual = last.point.residual;
    const bool early = record.direct || record.iterations < solverIterations ||
                       last.converged == study.systems;
    if (early && residual <= tolerances.absolute) {
        record.status = SolverStatus::Converged;
    } else if (early && last.converged > 0 && residual <= tolerances.relative) {
        record.status = SolverStatus::Converged;
        record.reason = "its own stopping test holds at this residual";
    } else if (residual > tolerances.absolute &&
               (!last.moved ||
                last.point.differenceMax > kLeastGain * study.start.differenceMax)) {
        record.status = SolverStatus::Wrong;
        record.reason = wrongReason(last, study);
    } else {
        record.status = SolverStatus::Limit;
        if (early) {
            record.reason = "stops short of its tolerance";
        } else if (residual <= tolerances.absolute) {
            record.reason =
                "as exact as floats can be, but its test does not hold within the limit";
        }
    }
    // A breakdown with another limit alone, such as with a shorter restart length.
    const auto broken = std::find_if(curve.runs().begin(), curve.runs().end(),
                                     [](const auto& entry) { return !entry.second.finite; });
    if (broken != curve.runs().end()) {
        record.reason += (record.reason.empty() ? "" : "; ") + std::string("not finite with ") +
                         std::to_string(broken->first) + " iterations";
    }
}

}  // namespace orv
