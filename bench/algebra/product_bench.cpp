#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/cpu_features.h"
#include "support/memory_traffic.h"
#include "support/ratios.h"
#include "support/solver_systems.h"

// Products of the five-diagonal band and of the tridiagonal matrix against one pass over whole
// vectors a diagonal, and against the C library moving as many bytes. The kernel target is that
// of the process: ORV_MAX_TARGET lowers it.

namespace orv::bench {
namespace {

using Target = std::unique_ptr<RealVector>;

// So many elements a turn, that the clock sees small systems too.
constexpr int kElementsPerTurn = 1 << 21;

struct Product {
    std::string name;
    int n;
    int read;  // arrays of n floats
    std::function<Target(const RealVector& x, Target y)> plain;
    std::function<Target(const RealVector& x, Target y)> fast;
};

void addDiagonal(const float* values, const float* x, float* y, int n) {
    for (int i = 0; i < n; ++i) {
        y[i] = y[i] + values[i] * x[i];
    }
}

Target bandByDiagonals(const BandMatrix& A, bool transposed, const RealVector& x, Target y) {
    const int n = A.Rows();
    y->Fill(0.0F);
    for (int k = 0; k < A.DiagonalCount(); ++k) {
        const int position = A.Position(transposed ? A.DiagonalCount() - 1 - k : k);
        const int d = transposed ? n - 1 - position : position - (n - 1);
        const RealVector& values = *A.diagonal(position);
        addDiagonal(values.data(), x.data() + std::max(d, 0), y->data() + std::max(-d, 0),
                    values.size());
    }
    return y;
}

Target lineByRows(const FTriDiagonalMatrix& A, bool transposed, const RealVector& x, Target y) {
    const int m = A.Rows() - 1;
    const RealVector& below = transposed ? A.upper() : A.lower();
    const RealVector& above = transposed ? A.lower() : A.upper();
    const auto term = [&](const RealVector& v, int i, int j) {
        return static_cast<double>(v[i]) * static_cast<double>(x[j]);
    };
    RealVector& sums = *y;
    sums[0] = static_cast<float>(term(A.main(), 0, 0) + term(above, 0, 1));
    for (int k = 1; k < m; ++k) {
        sums[k] = static_cast<float>((term(above, k, k + 1) + term(below, k - 1, k - 1)) +
                                     term(A.main(), k, k));
    }
    sums[m] = static_cast<float>(term(below, m - 1, m - 1) + term(A.main(), m, m));
    return y;
}

Product bandProduct(int side, bool transposed) {
    const auto A = std::make_shared<BandMatrix>(test::windyPlane(side, side, /*tau=*/2.0F));
    const std::string size = std::to_string(side) + "x" + std::to_string(side);
    return {(transposed ? "band-transposed/" : "band/") + size, side * side, 6,
            [=](const RealVector& x, Target y) {
                return bandByDiagonals(*A, transposed, x, std::move(y));
            },
            [=](const RealVector& x, Target y) {
                return transposed ? A->MultiplyTransposed(x, std::move(y))
                                  : A->Multiply(x, std::move(y));
            }};
}

Product lineProduct(int n, bool transposed) {
    const auto A = std::make_shared<FTriDiagonalMatrix>(test::diffusionLine(n, /*tau=*/2.0F));
    for (int i = 0; i < n - 1; ++i) {
        A->Set(i, i + 1, -1.5F);
    }
    return {(transposed ? "line-transposed/" : "line/") + std::to_string(n), n, 4,
            [=](const RealVector& x, Target y) {
                return lineByRows(*A, transposed, x, std::move(y));
            },
            [=](const RealVector& x, Target y) {
                return transposed ? A->MultiplyTransposed(x, std::move(y))
                                  : A->Multiply(x, std::move(y));
            }};
}

void compare(benchmark::State& state, const Product& product) {
    const RealVector x = test::wavyVector(product.n);
    Target expected = product.plain(x, std::make_unique<RealVector>(product.n));
    Target y = product.fast(x, std::make_unique<RealVector>(product.n));
    if (!test::sameVectorBits(*y, *expected)) {
        state.SkipWithError("the bits differ from those of the plain product");
        return;
    }
    MemoryTraffic traffic(product.read, /*written=*/1, product.n);
    const int repeats = std::max(kElementsPerTurn / product.n, 1);
    const auto repeat = [&](const auto& turn) {
        for (int k = 0; k < repeats; ++k) {
            turn();
        }
    };
    BestTime fast;
    BestTime plain;
    BestTime memory;
    // The turns are interleaved, so that all of them meet the same neighbours.
    for (auto turn : state) {
        memory.time([&] { repeat([&] { traffic.run(); }); });
        plain.time([&] { repeat([&] { expected = product.plain(x, std::move(expected)); }); });
        state.SetIterationTime(
            fast.time([&] { repeat([&] { y = product.fast(x, std::move(y)); }); }) / repeats);
    }
    state.counters["times_plain"] = plain.seconds() / fast.seconds();
    state.counters["times_memory"] = memory.seconds() / fast.seconds();
    state.counters["ns_per_row"] = fast.seconds() / repeats / product.n * 1e9;
}

void add(const Product& product) {
    const std::string name = product.name + "/" + nameOf(bestKernelTarget());
    auto* entry = benchmark::RegisterBenchmark(
        name.c_str(), [=](benchmark::State& state) { compare(state, product); });
    entry->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(60);
}

const bool kRegistered = [] {
    for (const bool transposed : {false, true}) {
        for (const int side : {64, 512}) {
            add(bandProduct(side, transposed));
        }
        for (const int n : {512, 262144}) {
            add(lineProduct(n, transposed));
        }
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
