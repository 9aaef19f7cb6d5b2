#include "studies/solver_study.h"

#include <cmath>
#include <utility>

#include "base/text_output.h"
#include "operators/diffusion/scheme_table.h"
#include "solvers/linear_solver_list.h"
#include "studies/exact_solution.h"
#include "studies/solver_curve.h"
#include "studies/solver_needs.h"
#include "studies/solver_verdict.h"

namespace orv {

namespace {

double normOf(const std::vector<float>& samples) {
    double sum = 0.0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * sample;
    }
    return std::sqrt(sum);
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
    study.rounded =
        measureSolution(system, exact, std::vector<float>(exact.begin(), exact.end()));
    study.rightSideNorm = normOf(picture);

    const SolverTask task{order.settings.scheme, width, height, order.solverIterations};
    const auto count = static_cast<double>(order.solvers.size());
    for (const int id : order.solvers) {
        SolverRecordOfStudy record;
        record.id = id;
        record.reason = skipReason(id, task, order.named);
        if (record.reason.empty()) {
            SolverCurve curve(system, exact, [id](int limit) {
                return LinearSolverList(50, 10).Create(id, limit, limit, kStudyTolerance);
            });
            const auto done = static_cast<double>(study.solvers.size());
            const auto check = [&](double share) {
                return !progress || progress((done + share) / count, id);
            };
            if (!curve.trace(order.solverIterations, check)) {
                study.cancelled = true;
                return study;
            }
            judgeSolver(curve, study, order.solverIterations, record);
        }
        study.solvers.push_back(std::move(record));
    }
    return study;
}

}  // namespace orv
