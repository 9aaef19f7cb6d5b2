#include "studies/solver_study.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "base/rounding.h"
#include "base/text_output.h"
#include "operators/diffusion/scheme_table.h"
#include "studies/exact_solution.h"
#include "studies/solver_curve.h"
#include "studies/solver_needs.h"

namespace orv {

namespace {

/// A recursive residual drifts from the true one by some roundings of the solution.
constexpr double kRoundingSlack = 10.0;

std::string shortNumber(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2g", value);
    return text.data();
}

double normOf(const std::vector<float>& samples) {
    double sum = 0.0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * sample;
    }
    return std::sqrt(sum);
}

/// The residuals that count as a solver's tolerance.
struct Tolerances {
    double absolute;  ///< 0.0001 a system, or what rounding leaves of the exact solution
    double relative;  ///< for solvers that compare with the right side
};

Tolerances tolerancesOf(const SolverStudy& study, double rightSideNorm) {
    const double stated = kStudyTolerance * std::sqrt(static_cast<double>(study.systems));
    const double absolute = kRoundingSlack * std::max(stated, study.roundedResidual);
    return {absolute, std::max(absolute, 2.0 * kStudyTolerance * rightSideNorm)};
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

void judge(const SolverCurve& curve, const SolverStudy& study, const Tolerances& tolerances,
           int solverIterations, SolverRecordOfStudy& record) {
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
               (!last.moved || last.point.differenceMax > study.start.differenceMax)) {
        record.status = SolverStatus::Wrong;
        record.reason = last.moved ? "farther from the solution than the picture itself"
                                   : "gives the picture back unchanged";
    } else {
        record.status = SolverStatus::Limit;
        if (early) {
            record.reason = "stops short of its tolerance";
        } else if (residual <= tolerances.absolute) {
            record.reason = "as exact as floats can be, but its stopping test never holds";
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

}  // namespace

const char* nameOf(SolverStatus status) {
    switch (status) {
        case SolverStatus::Converged:
            return "converged";
        case SolverStatus::Limit:
            return "limit";
        case SolverStatus::BrokeDown:
            return "broke down";
        case SolverStatus::Wrong:
            return "wrong";
        case SolverStatus::Skipped:
            break;
    }
    return "skipped";
}

std::vector<int> studyLimits(int most) {
    std::vector<int> limits;
    for (const int limit : {1, 2, 3, 4, 5, 6, 8}) {
        if (limit < most) {
            limits.push_back(limit);
        }
    }
    for (long long decade = 1; decade < most; decade *= 10) {
        for (const int tenths : {100, 125, 160, 200, 250, 315, 400, 500, 630, 800}) {
            // 12.5 and 31.5 are rounded up.
            const long long limit = (tenths * decade + 9) / 10;
            if (limit < most) {
                limits.push_back(static_cast<int>(limit));
            }
        }
    }
    limits.push_back(most);
    return limits;
}

SolverStudy studySolvers(const FloatImage& plane, const StudyOrder& order,
                         const StudyProgress& progress) {
    SolverStudy study;
    const int width = plane.width();
    const int height = plane.height();
    if (!schemeFitsSize(order.settings.scheme, width, height)) {
        study.error = "the scheme 2DSemi needs at least 2 x 2 pixels, this picture has " +
                      std::to_string(width) + " x " + std::to_string(height);
        return study;
    }
    const SilencedOutput silence;
    const StudySystem system(plane, order.settings);
    const std::vector<double> exact = exactSolution(system);
    const std::vector<float> picture = system.rightSide();
    study.systems = system.systems();
    study.unknowns = system.unknowns();
    study.start = measureSolution(system, exact, picture);
    study.exactResidual = system.residual(exact);
    study.roundedResidual = system.residual(std::vector<float>(exact.begin(), exact.end()));
    const Tolerances tolerances = tolerancesOf(study, normOf(picture));

    const SolverTask task{order.settings.scheme, width, height, order.solverIterations};
    const auto count = static_cast<double>(order.solvers.size());
    for (const int id : order.solvers) {
        SolverRecordOfStudy record;
        record.id = id;
        record.reason = skipReason(id, task, order.named);
        if (record.reason.empty()) {
            SolverCurve curve(system, exact, id);
            const auto done = static_cast<double>(study.solvers.size());
            const auto check = [&](double share) {
                return !progress || progress((done + share) / count, id);
            };
            if (!curve.trace(order.solverIterations, check)) {
                study.cancelled = true;
                return study;
            }
            judge(curve, study, tolerances, order.solverIterations, record);
        }
        study.solvers.push_back(std::move(record));
    }
    return study;
}

}  // namespace orv
