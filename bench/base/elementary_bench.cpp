#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/cpu_features.h"
#include "base/kernels/elementary_kernels.h"
#include "support/ratios.h"

// The elementary functions over an array that lies in cache, against loops over the C++
// library's.

namespace orv::bench {
namespace {

constexpr std::size_t kCount = 4096;
constexpr double kExponent = 0.45;

using Loop = void (*)(const double* x, double* y, std::size_t n);

template <class Function>
void each(const double* x, double* y, std::size_t n, Function function) {
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = function(x[i]);
    }
}

struct Case {
    const char* name;
    Loop platform;
    void (*own)(const ElementaryKernels& kernels, const double* x, double* y, std::size_t n);
    double from;
    double to;
};

constexpr Case kCases[] = {
    {"exp",
     [](const double* x, double* y, std::size_t n) {
         each(x, y, n, [](double v) { return std::exp(v); });
     },
     [](const ElementaryKernels& k, const double* x, double* y, std::size_t n) {
         k.exp(x, y, n);
     },
     -6.0, 6.0},
    {"log",
     [](const double* x, double* y, std::size_t n) {
         each(x, y, n, [](double v) { return std::log(v); });
     },
     [](const ElementaryKernels& k, const double* x, double* y, std::size_t n) {
         k.log(x, y, n);
     },
     0.01, 255.0},
    {"log10",
     [](const double* x, double* y, std::size_t n) {
         each(x, y, n, [](double v) { return std::log10(v); });
     },
     [](const ElementaryKernels& k, const double* x, double* y, std::size_t n) {
         k.log10(x, y, n);
     },
     0.01, 255.0},
    {"exp10",
     [](const double* x, double* y, std::size_t n) {
         each(x, y, n, [](double v) { return std::pow(10.0, v); });
     },
     [](const ElementaryKernels& k, const double* x, double* y, std::size_t n) {
         k.exp10(x, y, n);
     },
     -2.5, 2.5},
    {"atan",
     [](const double* x, double* y, std::size_t n) {
         each(x, y, n, [](double v) { return std::atan(v); });
     },
     [](const ElementaryKernels& k, const double* x, double* y, std::size_t n) {
         k.atan(x, y, n);
     },
     -4.0, 4.0},
    {"pow",
     [](const double* x, double* y, std::size_t n) {
         each(x, y, n, [](double v) { return std::pow(v, kExponent); });
     },
     [](const ElementaryKernels& k, const double* x, double* y, std::size_t n) {
         k.pow(x, kExponent, y, n);
     },
     0.004, 1.0},
};

std::vector<double> argumentsOf(const Case& c) {
    std::vector<double> x(kCount);
    std::uint32_t state = 1;
    for (double& value : x) {
        state = state * 1664525U + 1013904223U;
        value = c.from + (c.to - c.from) * (static_cast<double>(state) / 4294967296.0);
    }
    return x;
}

template <class Work>
void run(benchmark::State& state, const Case& c, const std::string& name, Work work) {
    const std::vector<double> x = argumentsOf(c);
    std::vector<double> y(kCount);
    std::vector<double> expected(kCount);
    c.platform(x.data(), expected.data(), kCount);
    work(x.data(), y.data());
    for (std::size_t i = 0; i < kCount; ++i) {
        if (!(std::fabs(y[i] - expected[i]) <= std::fabs(expected[i]) * 0x1p-51 + 0x1p-60)) {
            state.SkipWithError("the results differ by more than the last bits");
            return;
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int i = 0; i < 200; ++i) {
                work(x.data(), y.data());
                benchmark::ClobberMemory();
            }
        });
    }
    keepBest(name, best);
    tellRatio(state, "times_library", std::string(c.name) + "/library", name);
    state.SetItemsProcessed(state.iterations() * 200 * static_cast<std::int64_t>(kCount));
}

void add(const Case& c) {
    const std::string base = std::string(c.name) + "/";
    benchmark::RegisterBenchmark((base + "library").c_str(), [&c](benchmark::State& state) {
        run(state, c, std::string(c.name) + "/library",
            [&](const double* x, double* y) { c.platform(x, y, kCount); });
    });
    for (const KernelTarget target :
         {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
        const ElementaryKernels* kernels = elementaryKernels(target);
        if (kernels == nullptr || !isAvailable(target)) {
            continue;
        }
        const std::string name = base + nameOf(target);
        benchmark::RegisterBenchmark(
            name.c_str(), [&c, kernels, name](benchmark::State& state) {
                run(state, c, name,
                    [&](const double* x, double* y) { c.own(*kernels, x, y, kCount); });
            });
    }
}

const bool registered = [] {
    for (const Case& c : kCases) {
        add(c);
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
