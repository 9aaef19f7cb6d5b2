#pragma once

#include <benchmark/benchmark.h>

#include <ctime>
#include <limits>
#include <map>
#include <string>

namespace orv::bench {

/// The shortest of the timed turns of one benchmark, in seconds of processor time.
///
/// All that is measured runs in one thread, and processor time leaves out what other programs
/// take. They only ever add to a time, so the least one is the steadiest figure; ratios are
/// formed from it.
class BestTime {
  public:
    /// Runs and times one turn; tells how long it took.
    template <class Turn>
    double time(Turn turn) {
        const std::clock_t start = std::clock();
        turn();
        const double passed = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        best_ = passed < best_ ? passed : best_;
        return passed;
    }
    double seconds() const { return best_; }

  private:
    double best_ = std::numeric_limits<double>::infinity();
};

/// Best times by name, so that a later benchmark of the run can tell its ratio to an earlier
/// one.
inline std::map<std::string, double>& bestTimes() {
    static std::map<std::string, double> times;
    return times;
}

/// Keeps `best` under `name`. Google Benchmark may call a benchmark more than once.
inline void keepBest(const std::string& name, const BestTime& best) {
    const auto found = bestTimes().find(name);
    if (found == bestTimes().end() || best.seconds() < found->second) {
        bestTimes()[name] = best.seconds();
    }
}

/// Sets the counter `label` to time(reference) / time(name): how many times faster `name` is.
inline void tellRatio(benchmark::State& state, const char* label, const std::string& reference,
                      const std::string& name) {
    const auto found = bestTimes().find(reference);
    if (found != bestTimes().end()) {
        state.counters[label] = found->second / bestTimes()[name];
    }
}

}  // namespace orv::bench
