#include "batch/batch_progress.h"

#include <gtest/gtest.h>

#include <string>

namespace orv::cli {
namespace {

TEST(BatchLine, ShowsAllWhereThereIsRoom) {
    EXPECT_EQ(batchLine("12 of 200", 6, "12 s, 3 min 05 s left", "a.png, b.png", 79),
              "12 of 200   6 %  #...................  12 s, 3 min 05 s left  a.png, b.png");
}

TEST(BatchLine, LeavesNamesOutFirst) {
    EXPECT_EQ(batchLine("12 of 200", 60, "12 s, 8 s left", "a.png, b.png", 59),
              "12 of 200  60 %  ############........  12 s, 8 s left");
}

TEST(BatchLine, NeverGetsWider) {
    for (int width = 0; width < 100; ++width) {
        const std::string line =
            batchLine("1234 of 5678, 12 failed", 100, "1 min 00 s, 3 min 05 s left",
                      "a name.png, another.png", width);

        EXPECT_LE(static_cast<int>(line.size()), width);
    }
}

}  // namespace
}  // namespace orv::cli
