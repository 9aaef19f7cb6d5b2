#include "studies/solver_needs.h"

#include <array>
#include <cstdio>

#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr int kThomas = 0;
constexpr double kMostBytes = 4.0e9;
/// Multiply-adds of a factorisation that takes a minute or more.
constexpr double kMostOperations = 2.0e11;

/// The vectors that a solver keeps for a limit of k, where their number grows with k; else 0.
double growingVectors(int id, int k) {
    constexpr int kGmres = 24;
    constexpr int kGcr = 25;
    constexpr int kMgcr = 26;
    constexpr int kFirstCombined = 27;
    constexpr int kLastCombined = 30;
    constexpr int kRestrictedGmres = 32;
    if (id == kGmres || id == kMgcr || id == kRestrictedGmres) {
        return k + 1.0;
    }
    if (id == kGcr) {
        return 2.0 * k + 1.0;
    }
    if (id >= kFirstCombined && id <= kLastCombined) {
        return 2.0 * k;
    }
    return 0.0;
}

std::string gigabytes(double bytes) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.0f GB", bytes / 1e9);
    return text.data();
}

std::string factorReason(const SolverTask& task, bool named) {
    const double width = task.width;
    const double unknowns = width * task.height;
    const double bytes = 4.0 * unknowns * (2.0 * width + 1.0);
    if (bytes > kMostBytes) {
        return "its factors would take " + gigabytes(bytes);
    }
    if (!named && unknowns * width * width > kMostOperations) {
        return "its factors take minutes; name it to run it";
    }
    return {};
}

}  // namespace

std::string skipReason(int id, const SolverTask& task, bool named) {
    if (!solverFitsScheme(id, task.scheme)) {
        return "needs the five diagonals of 2DSemi";
    }
    const bool whole = task.scheme == kScheme2DSemi;
    if (whole && id == kThomas) {
        return factorReason(task, named);
    }
    const double vectors = growingVectors(id, task.solverIterations);
    const double length =
        whole ? static_cast<double>(task.width) * task.height : static_cast<double>(task.width);
    const double bytes = 4.0 * vectors * length;
    if (bytes > kMostBytes) {
        std::array<char, 32> count{};
        std::snprintf(count.data(), count.size(), "%.0f", vectors);
        return "its " + std::string(count.data()) + " vectors would take " + gigabytes(bytes);
    }
    return {};
}

}  // namespace orv
