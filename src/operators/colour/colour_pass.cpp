#include "operators/colour/colour_pass.h"

#include <algorithm>

#include "exports/progress_window.h"
#include "exports/work_window.h"

namespace orv {

namespace {

constexpr std::size_t kBlockSamples = 1024;
static_assert(kBlockSamples % 8 == 0, "a block keeps each sample in its lane");

std::size_t blocksOf(std::size_t n) {
    return (n + kBlockSamples - 1) / kBlockSamples;
}

}  // namespace

bool forEachPart(std::size_t parts, const ThirdsReport* report,
                 const std::function<void(std::size_t)>& part) {
    std::size_t next = 0;
    const auto reportUpTo = [&](std::size_t done) {
        for (; report != nullptr && next < 3 && done * 3 >= next * parts; ++next) {
            reportProgress(report->first + report->span * static_cast<int>(next) / 3);
        }
    };
    for (std::size_t i = 0; i < parts; ++i) {
        reportUpTo(i);
        if (!reportLine(static_cast<int>(i), static_cast<int>(parts))) {
            return false;
        }
        part(i);
    }
    reportUpTo(parts);
    return true;
}

void inBlocks(std::size_t n, const std::function<void(std::size_t, std::size_t)>& block) {
    for (std::size_t start = 0; start < n; start += kBlockSamples) {
        block(start, std::min(kBlockSamples, n - start));
    }
}

bool forEachBlock(std::size_t n, const ThirdsReport* report,
                  const std::function<void(std::size_t, std::size_t)>& block) {
    return forEachPart(blocksOf(n), report, [&](std::size_t i) {
        const std::size_t start = i * kBlockSamples;
        block(start, std::min(kBlockSamples, n - start));
    });
}

}  // namespace orv
