#include "exports/work_window.h"

#include <gtest/gtest.h>

#include <vector>

namespace orv {
namespace {

class Recorder : public WorkObserver {
  public:
    bool onWork(double done) override {
        values.push_back(done);
        return values.size() < limit;
    }
    std::vector<double> values;
    std::size_t limit = 100;
};

TEST(WorkWindow, SlicesNestAndAreRestored) {
    Recorder recorder;
    const WorkObserverScope scope(&recorder);
    {
        const WorkSlice plane(1, 2);
        {
            const WorkSlice step(0, 2);
            reportWork(1, 2);
        }
        reportWork(1, 1);
    }
    reportWork(1, 1);

    EXPECT_EQ(recorder.values, (std::vector<double>{0.625, 1.0, 1.0}));
}

TEST(WorkWindow, CancelSticksUntilTheScopeEnds) {
    Recorder recorder;
    recorder.limit = 1;
    {
        const WorkObserverScope scope(&recorder);
        EXPECT_FALSE(reportWork(1, 10));
        EXPECT_FALSE(reportWork(2, 10));
        EXPECT_TRUE(workCancelled());
    }

    EXPECT_FALSE(workCancelled());
    EXPECT_EQ(recorder.values.size(), 1U);
    EXPECT_TRUE(reportWork(1, 1));
}

}  // namespace
}  // namespace orv
