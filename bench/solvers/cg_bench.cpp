#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#ifdef ORV_BENCH_EIGEN
#include <Eigen/IterativeLinearSolvers>
#include <Eigen/Sparse>
#endif

#include "base/cpu_features.h"
#include "solvers/gradient/cg_solver.h"
#include "support/memory_traffic.h"
#include "support/ratios.h"
#include "support/solver_systems.h"

// An iteration of conjugate gradients on the five-diagonal system of a diffusion step, beside
// Eigen's ConjugateGradient with the identity as preconditioner on the same floats, and beside
// the C library moving the bytes that the operations of the iteration read and write. All run
// in one thread. The kernel target is that of the process: ORV_MAX_TARGET lowers it.

namespace orv::bench {
namespace {

constexpr float kTau = 4.0F;
constexpr int kIterations = 40;
// Product 6 arrays in and 1 out, dot 2, two updates 2 and 1 each, square 1, new direction 2
// and 1.
constexpr int kArraysRead = 6 + 2 + 2 * 2 + 1 + 2;
constexpr int kArraysWritten = 1 + 2 * 1 + 1;

// One system and what both solvers make of it in kIterations iterations from u = b.
struct System {
    explicit System(int side)
        : A(test::diffusionPlane(side, side, kTau)), b(test::wavyVector(A.Rows())) {}

    BandMatrix A;
    RealVector b;
};

// A tolerance of 0 is never reached: the solver makes all its iterations.
class Ours {
  public:
    explicit Ours(const System& system)
        : system_(system), solver_(kIterations, /*tol=*/0.0), u_(system.b.Clone()) {}
    void solve() {
        u_->CopyFrom(system_.b);
        u_ = solver_.Solve(system_.A, system_.b, std::move(u_));
    }
    double element(int i) const { return (*u_)[i]; }

  private:
    const System& system_;
    CgSolver solver_;
    std::unique_ptr<RealVector> u_;
};

#ifdef ORV_BENCH_EIGEN
template <class Scalar>
class Peer {
  public:
    using Sparse = Eigen::SparseMatrix<Scalar, Eigen::RowMajor>;
    using Vector = Eigen::Matrix<Scalar, Eigen::Dynamic, 1>;

    Peer(const System& system, int iterations)
        : matrix_(sparseOf(system.A)), b_(system.b.size()) {
        for (int i = 0; i < system.b.size(); ++i) {
            b_[i] = system.b[i];
        }
        solver_.setMaxIterations(iterations);
        solver_.setTolerance(Scalar{0});
        solver_.compute(matrix_);
    }
    void solve() { u_ = solver_.solveWithGuess(b_, b_); }
    double element(int i) const { return u_[i]; }
    int iterations() const { return static_cast<int>(solver_.iterations()); }

  private:
    static Sparse sparseOf(const BandMatrix& A) {
        const int n = A.Rows();
        std::vector<Eigen::Triplet<Scalar>> elements;
        for (int k = 0; k < A.DiagonalCount(); ++k) {
            const int d = A.Position(k) - (n - 1);
            const RealVector& values = *A.diagonal(A.Position(k));
            for (int t = 0; t < values.size(); ++t) {
                if (values[t] != 0.0F) {
                    elements.emplace_back(t + std::max(-d, 0), t + std::max(d, 0), values[t]);
                }
            }
        }
        Sparse sparse(n, n);
        sparse.setFromTriplets(elements.begin(), elements.end());
        return sparse;
    }

    Sparse matrix_;
    Vector b_;
    Vector u_;
    Eigen::ConjugateGradient<Sparse, Eigen::Lower | Eigen::Upper, Eigen::IdentityPreconditioner>
        solver_;
};

// The largest distance of two solutions over the largest element.
template <class A, class B>
double distance(const A& a, const B& b, int n) {
    double largest = 0.0;
    double apart = 0.0;
    for (int i = 0; i < n; ++i) {
        largest = std::max(largest, std::abs(b.element(i)));
        apart = std::max(apart, std::abs(a.element(i) - b.element(i)));
    }
    return apart / largest;
}

// Whether both give the solution that double precision gives, within a few float roundings.
bool bothSolve(const System& system, const Ours& ours, const Peer<float>& peer) {
    constexpr double kRoundings = 4e-6;
    Peer<double> exact(system, 4 * kIterations);
    exact.solve();
    const int n = system.b.size();
    return peer.iterations() == kIterations && distance(ours, exact, n) < kRoundings &&
           distance(peer, exact, n) < kRoundings;
}
#endif

void compare(benchmark::State& state, int side) {
    const System system(side);
    Ours ours(system);
    ours.solve();
#ifdef ORV_BENCH_EIGEN
    Peer<float> peer(system, kIterations);
    peer.solve();
    if (!bothSolve(system, ours, peer)) {
        state.SkipWithError("a solution isn't that of double precision");
        return;
    }
    BestTime peerTime;
#endif
    MemoryTraffic traffic(kArraysRead, kArraysWritten, system.b.size());
    const int repeats = std::max((1 << 18) / system.b.size(), 1);
    const auto repeat = [&](int count, const auto& turn) {
        for (int k = 0; k < count; ++k) {
            turn();
        }
    };
    BestTime time;
    BestTime memory;
    // The turns are interleaved, so that all of them meet the same neighbours.
    for (auto turn : state) {
#ifdef ORV_BENCH_EIGEN
        peerTime.time([&] { repeat(repeats, [&] { peer.solve(); }); });
#endif
        memory.time([&] { repeat(repeats * kIterations, [&] { traffic.run(); }); });
        state.SetIterationTime(time.time([&] { repeat(repeats, [&] { ours.solve(); }); }) /
                               repeats);
    }
#ifdef ORV_BENCH_EIGEN
    state.counters["times_eigen"] = peerTime.seconds() / time.seconds();
#endif
    state.counters["times_memory"] = memory.seconds() / time.seconds();
    state.counters["ns_per_row"] =
        time.seconds() / repeats / kIterations / system.b.size() * 1e9;
}

const bool kRegistered = [] {
    for (const int side : {64, 256, 512, 1024}) {
        const std::string name = "cg/" + std::to_string(side) + "x" + std::to_string(side) +
                                 "/" + nameOf(bestKernelTarget());
        auto* entry = benchmark::RegisterBenchmark(
            name.c_str(), [=](benchmark::State& state) { compare(state, side); });
        entry->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
