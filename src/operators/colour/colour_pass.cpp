#include "operators/colour/colour_pass.h"

#include <algorithm>

#include "exports/progress_window.h"
#include "exports/work_window.h"

namespace orv {

namespace {

constexpr std::size_t kBlockSamples = 1024;
static_assert(kBlockSamples % 8 == 0, "a block keeps each sample in its lane");

}  // namespace

bool forEachBlock(std::size_t n, const ThirdsReport* report,
                  const std::function<void(std::size_t, std::size_t)>& block) {
    const std::size_t blocks = (n + kBlockSamples - 1) / kBlockSamples;
    int next = 0;
    const auto reportUpTo = [&](std::size_t done) {
        for (; report != nullptr && next < 3 &&
               done * 3 >= static_cast<std::size_t>(next) * blocks;
             ++next) {
            reportProgress(report->first + report->span * next / 3);
        }
    };
    reportUpTo(0);
    for (std::size_t i = 0; i < blocks; ++i) {
        reportUpTo(i);
        if (!reportLine(static_cast<int>(i), static_cast<int>(blocks))) {
            return false;
        }
        const std::size_t start = i * kBlockSamples;
        block(start, std::min(kBlockSamples, n - start));
    }
    reportUpTo(blocks);
    return true;
}

}  // namespace orv
