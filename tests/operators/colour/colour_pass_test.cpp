#include "operators/colour/colour_pass.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "exports/progress_window.h"
#include "support/progress_range.h"

namespace orv {
namespace {

std::vector<std::pair<int, int>>& reports() {
    static std::vector<std::pair<int, int>> values;
    return values;
}

int& partsDone() {
    static int count;
    return count;
}

void ORV_PROGRESS_CALL recordReport(int value) {
    reports().emplace_back(value, partsDone());
}

// The reports of a pass, each with the parts that were done by then.
std::vector<std::pair<int, int>> reportsOf(std::size_t parts) {
    const test::ProgressRange range(0, 100);
    progressWindow().callback = recordReport;
    reports().clear();
    partsDone() = 0;
    const ThirdsReport report{20, 20};
    EXPECT_TRUE(forEachPart(parts, &report, [](std::size_t i) {
        EXPECT_EQ(static_cast<int>(i), partsDone());
        ++partsDone();
    }));
    return reports();
}

using Reports = std::vector<std::pair<int, int>>;

TEST(ForEachPart, ReportsAtTheStartOfEachThird) {
    EXPECT_EQ(reportsOf(9), (Reports{{20, 0}, {26, 3}, {33, 6}}));
    EXPECT_EQ(reportsOf(10), (Reports{{20, 0}, {26, 4}, {33, 7}}));
}

TEST(ForEachPart, ReportsThriceHoweverFewThePartsAre) {
    EXPECT_EQ(reportsOf(2), (Reports{{20, 0}, {26, 1}, {33, 2}}));
    EXPECT_EQ(reportsOf(1), (Reports{{20, 0}, {26, 1}, {33, 1}}));
    EXPECT_EQ(reportsOf(0), (Reports{{20, 0}, {26, 0}, {33, 0}}));
}

TEST(InBlocks, CoversEachSampleOnceInBlocksOfWholeLanes) {
    for (const std::size_t n : {0U, 1U, 1023U, 1024U, 1025U, 5000U}) {
        std::size_t next = 0;
        inBlocks(n, [&](std::size_t start, std::size_t count) {
            EXPECT_EQ(start, next);
            EXPECT_EQ(start % 8, 0U);
            EXPECT_GT(count, 0U);
            next = start + count;
        });
        EXPECT_EQ(next, n);
    }
}

}  // namespace
}  // namespace orv
