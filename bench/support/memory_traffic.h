#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace orv::bench {

/// The C library moving as many bytes as an operation moves: what memory allows.
///
/// memcpy stands for the arrays that the operation writes and as many of those that it reads,
/// a search with memchr for the arrays that it reads beyond.
class MemoryTraffic {
  public:
    /// An operation that reads `read` and writes `written` arrays of n floats.
    MemoryTraffic(int read, int written, int n)
        : source_(bytesOf(written, n), 1), target_(bytesOf(written, n), 1) {
        searched_.assign(bytesOf(read > written ? read - written : 0, n), 1);
    }

    void run() {
        if (!source_.empty()) {
            std::memcpy(target_.data(), source_.data(), source_.size());
            benchmark::DoNotOptimize(target_.data());
        }
        if (!searched_.empty()) {
            const void* found = std::memchr(searched_.data(), 0, searched_.size());
            benchmark::DoNotOptimize(found);
        }
        benchmark::ClobberMemory();
    }

  private:
    static std::size_t bytesOf(int arrays, int n) {
        return sizeof(float) * static_cast<std::size_t>(arrays) * static_cast<std::size_t>(n);
    }

    std::vector<char> source_;
    std::vector<char> target_;
    std::vector<char> searched_;
};

}  // namespace orv::bench
