#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "schemes/aos_deblurring/aos_deblurring_operator.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;

std::unique_ptr<FloatImage> run(int iterations, const FloatImage& source, bool plain = false) {
    AosDeblurringOperator deblurring(iterations, /*kernel=*/3, /*tau=*/0.2, /*lambda=*/3.0,
                                     /*sigma=*/1.0, /*edgeContrast=*/5.0, /*keepObserved=*/0,
                                     /*updateEachStep=*/1);
    deblurring.setPlainPath(plain);
    return deblurring.apply(source, nullptr);
}

/// Records what reaches a host's callback while it lives.
class Reports {
  public:
    Reports() : before_(progressWindow()) {
        values().clear();
        progressWindow() = ProgressWindow{[](int value) { values().push_back(value); }, 0, 100};
    }
    ~Reports() { progressWindow() = before_; }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    static std::vector<int>& values() {
        static std::vector<int> recorded;
        return recorded;
    }

  private:
    ProgressWindow before_;
};

/// The values that a run reports, from their formulas.
std::vector<int> expectedReports(long long iterations, long long width, long long height) {
    std::vector<int> values = {0, 10};
    const auto add = [&](long long value) { values.push_back(static_cast<int>(value)); };
    for (long long i = 0; i < iterations; ++i) {
        const long long base = 90 * i / iterations + 10;
        add(base);
        for (long long y = 0; y < height; ++y) {
            add(y * 45 * i / (iterations * height) + base);
        }
        for (long long x = 0; x < width; ++x) {
            add(x * 45 * i / (iterations * width) + 90 * i / iterations + 45 * i / iterations +
                10);
        }
    }
    values.push_back(100);
    return values;
}

TEST(AosDeblurringOperator, ReportsEveryLineToTheHost) {
    for (const bool plain : {false, true}) {
        const Reports reports;
        run(2, noisePlane(6, 7, 9), plain);

        const std::vector<int> expected = {0,  10,                          //
                                           10, 10, 10, 10, 10, 10, 10, 10,  //
                                           10, 10, 10, 10, 10, 10,          //
                                           55, 55, 58, 61, 64, 67, 71, 74,  //
                                           77, 80, 84, 88, 92, 95,          //
                                           100};
        EXPECT_EQ(Reports::values(), expected);
        EXPECT_EQ(expectedReports(2, 6, 7), expected);
    }
}

TEST(Quirk, AosProgressOvershoot) {
    const Reports reports;
    run(10, noisePlane(8, 6, 9));

    EXPECT_EQ(Reports::values(), expectedReports(10, 8, 6));
    // The last column of the last iteration.
    EXPECT_EQ(Reports::values()[Reports::values().size() - 2], 166);
}

TEST(AosDeblurringOperator, StopsWhenAsked) {
    class Stop : public WorkObserver {
      public:
        bool onWork(double /*done*/) override {
            ++calls_;
            return false;
        }
        int calls_ = 0;
    } stop;
    const WorkObserverScope scope(&stop);
    const Reports reports;

    const auto result = run(50, noisePlane(8, 8, 1));

    EXPECT_NE(result, nullptr);
    EXPECT_EQ(stop.calls_, 1);
    EXPECT_LT(Reports::values().size(), 10u);
}

}  // namespace
}  // namespace orv
