#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "algebra/kernels/vector_kernels.h"
#include "algebra/real_vector.h"
#include "base/cpu_features.h"
#include "support/memory_traffic.h"
#include "support/ratios.h"
#include "support/solver_systems.h"

// The updates and sums under RealVector: the kernels of every target against generic, bit by bit, and against the
// C library moving as many bytes.

namespace orv::bench {
namespace {

constexpr int kElementsPerTurn = 1 << 22;

struct Vectors {
    RealVector v;
    RealVector x;
    RealVector y;
    RealVector z;
    double sum;
    int n;
};

using Kernels = const VectorKernels&;

struct Operation {
    const char* name;
    int read;     // arrays of n floats
    int written;  // likewise
    void (*run)(Kernels k, Vectors& vectors);
};

float* data(RealVector& v) {
    return v.data();
}

// Factors that keep repeated updates far from overflow and underflow.
constexpr Operation kOperations[] = {
    {"sum-of-squares", 1, 0,
     [](Kernels k, Vectors& a) { a.sum = k.sumOfSquares(data(a.x), a.n); }},
    {"dot", 2, 0, [](Kernels k, Vectors& a) { a.sum = k.dot(data(a.x), data(a.y), a.n); }},
    {"sum", 1, 0, [](Kernels k, Vectors& a) { a.sum = k.sum(data(a.x), a.n); }},
    {"copy", 1, 1, [](Kernels, Vectors& a) { a.v.CopyFrom(a.x); }},
    {"fill", 0, 1, [](Kernels, Vectors& a) { a.v.Fill(0.5F); }},
    {"set-scaled", 1, 1,
     [](Kernels k, Vectors& a) { k.setScaled(data(a.v), 0.7F, data(a.x), a.n); }},
    {"set-difference", 2, 1,
     [](Kernels k, Vectors& a) { k.setDifference(data(a.v), data(a.x), data(a.y), a.n); }},
    {"add-scaled", 2, 1,
     [](Kernels k, Vectors& a) { k.addScaled(data(a.v), 0.001F, data(a.x), a.n); }},
    {"add-scaled-sum", 2, 1,
     [](Kernels k, Vectors& a) {
         a.sum = k.addScaledSumSquares(data(a.v), 0.001F, data(a.x), a.n);
     }},
    {"scale-add", 2, 1,
     [](Kernels k, Vectors& a) { k.scaleAdd(data(a.v), 0.9F, data(a.x), a.n); }},
    {"add-scaled2", 3, 1,
     [](Kernels k, Vectors& a) {
         k.addScaled2(data(a.v), 0.001F, data(a.x), -0.001F, data(a.y), a.n);
     }},
    {"add-scaled3", 4, 1,
     [](Kernels k, Vectors& a) {
         k.addScaled3(data(a.v), 0.001F, data(a.x), -0.001F, data(a.y), 0.002F, data(a.z), a.n);
     }},
    {"scale-add-scaled", 2, 1,
     [](Kernels k, Vectors& a) { k.scaleAddScaled(data(a.v), 0.9F, 0.2F, data(a.x), a.n); }},
    {"scale-add-scaled2", 3, 1,
     [](Kernels k, Vectors& a) {
         k.scaleAddScaled2(data(a.v), 0.9F, 0.2F, data(a.x), -0.1F, data(a.y), a.n);
     }},
};

Vectors vectorsOf(int n) {
    const RealVector x = test::wavyVector(n);
    Vectors vectors{x, x, x, x, 0.0, n};
    vectors.y.MultiplyScalar(0.3F);
    vectors.z.AddScalar(1.0F);
    return vectors;
}

void compare(benchmark::State& state, const Operation& operation, int n, KernelTarget target) {
    Vectors expected = vectorsOf(n);
    operation.run(vectorKernels(KernelTarget::Generic), expected);
    const VectorKernels& kernels = vectorKernels(target);
    Vectors vectors = vectorsOf(n);
    operation.run(kernels, vectors);
    if (!test::sameVectorBits(vectors.v, expected.v) || vectors.sum != expected.sum) {
        state.SkipWithError("the bits differ from those of the generic target");
        return;
    }
    MemoryTraffic traffic(operation.read, operation.written, n);
    const int repeats = std::max(kElementsPerTurn / n, 1);
    BestTime time;
    BestTime memory;
    for (auto turn : state) {
        memory.time([&] {
            for (int k = 0; k < repeats; ++k) {
                traffic.run();
            }
        });
        state.SetIterationTime(time.time([&] {
            for (int k = 0; k < repeats; ++k) {
                operation.run(kernels, vectors);
                benchmark::DoNotOptimize(vectors.sum);
            }
        }) / repeats);
    }
    state.counters["times_memory"] = memory.seconds() / time.seconds();
    state.counters["ns_per_row"] = time.seconds() / repeats / n * 1e9;
}

const bool kRegistered = [] {
    for (const int n : {4096, 262144, 4194304}) {
        for (const Operation& operation : kOperations) {
            for (const KernelTarget target :
                 {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
                if (isAvailable(target)) {
                    const std::string name = std::string(operation.name) + "/" +
                                             std::to_string(n) + "/" + nameOf(target);
                    auto* entry = benchmark::RegisterBenchmark(
                        name.c_str(), [=, &operation](benchmark::State& state) {
                            compare(state, operation, n, target);
                        });
                    entry->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(40);
                }
            }
        }
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
