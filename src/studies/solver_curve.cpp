#include "studies/solver_curve.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <numeric>
#include <utility>

#include "solvers/iterative_linear_solver.h"

namespace orv {

namespace {

/// So many limits in a row that break down end a curve. One or two may come before limits that
/// work: lines that start from the line before add up what one or two steps overshoot.
constexpr int kBreakdownsToEnd = 3;

/// FNV-1a over the samples, a word at a time.
std::uint64_t digestOf(const std::vector<float>& samples) {
    std::uint64_t digest = 14695981039346656037ULL;
    for (const float sample : samples) {
        std::uint32_t word = 0;
        std::memcpy(&word, &sample, sizeof(word));
        digest = (digest ^ word) * 1099511628211ULL;
        digest ^= digest >> 32;
    }
    return digest;
}

/// Whether two runs ended alike.
bool alike(const SolverCurve::Run& a, const SolverCurve::Run& b) {
    return a.finite == b.finite && (!a.finite || a.bits == b.bits);
}

}  // namespace

StudyPoint measureSolution(const StudySystem& system, const std::vector<double>& exact,
                           const std::vector<float>& samples) {
    StudyPoint point;
    const bool finite =
        samples.size() == exact.size() &&
        std::all_of(samples.begin(), samples.end(), [](float s) { return std::isfinite(s); });
    if (!finite) {
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        return {0, 0.0, kNone, kNone, kNone};
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
        const double difference = std::abs(static_cast<double>(samples[i]) - exact[i]);
        point.differenceMax = std::max(point.differenceMax, difference);
        sum += difference;
    }
    point.differenceMean = sum / static_cast<double>(exact.size());
    point.residual = system.residual(samples);
    return point;
}

SolverCurve::SolverCurve(const StudySystem& system, const std::vector<double>& exact,
                         Maker make)
    : system_(system), exact_(exact), start_(system.rightSide()), make_(std::move(make)) {}

const SolverCurve::Run& SolverCurve::run(int limit) {
    const auto known = runs_.find(limit);
    if (known != runs_.end()) {
        return known->second;
    }
    const std::unique_ptr<LinearSolver> solver = make_(limit);
    direct_ = dynamic_cast<const IterativeLinearSolver*>(solver.get()) == nullptr;
    const StudySolution solution = system_.solve(*solver);
    Run run;
    run.point = measureSolution(system_, exact_, solution.samples);
    run.point.limit = limit;
    run.point.seconds = solution.seconds;
    run.finite = std::isfinite(run.point.differenceMax);
    run.moved = solution.samples != start_;
    run.converged = solution.converged;
    run.bits = digestOf(solution.samples);
    return runs_.emplace(limit, run).first->second;
}

bool SolverCurve::trace(int solverIterations, const Check& check) {
    const std::vector<int> limits = studyLimits(solverIterations);
    // An iteration of one run counts as much as that of another.
    const double work = std::accumulate(limits.begin(), limits.end(), 0.0);
    double done = 0.0;
    int broken = 0;
    for (std::size_t i = 0; i < limits.size(); ++i) {
        if (!check(done / work)) {
            return false;
        }
        done += limits[i];
        const Run& now = run(limits[i]);
        if (direct_) {
            return true;
        }
        broken = now.finite ? 0 : broken + 1;
        const bool still = now.finite && i > 0 && alike(now, run(limits[i - 1]));
        if ((still || broken == kBreakdownsToEnd) && i + 1 < limits.size()) {
            if (!check(done / work)) {
                return false;
            }
            if (alike(now, run(limits.back()))) {
                break;
            }
        }
    }
    return pinDown(check);
}

int SolverCurve::settledAt() const {
    int settled = runs_.rbegin()->first;
    for (auto entry = runs_.rbegin(); entry != runs_.rend(); ++entry) {
        if (!alike(entry->second, last())) {
            break;
        }
        settled = entry->first;
    }
    return settled;
}

bool SolverCurve::pinDown(const Check& check) {
    int settled = settledAt();
    const auto entry = runs_.find(settled);
    int before = entry == runs_.begin() ? 0 : std::prev(entry)->first;
    while (settled - before > 1) {
        if (!check(1.0)) {
            return false;
        }
        const int middle = before + (settled - before) / 2;
        (alike(run(middle), last()) ? settled : before) = middle;
    }
    return true;
}

}  // namespace orv
