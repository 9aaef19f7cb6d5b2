#include "batch/time_left.h"

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

/// Far more than what starting a worker counts for.
constexpr double kLarge = 2e9;

TEST(TimeLeft, IsUnknownUntilSomethingTellsASpeed) {
    TimeLeft work(1);
    work.add(".png", kLarge);
    work.add(".png", kLarge);

    work.start(0, 0.0);

    EXPECT_EQ(work.secondsLeft(5.0), -1.0);
}

TEST(TimeLeft, FollowsFromThePicturesThatAreDone) {
    TimeLeft work(1);
    for (int i = 0; i < 3; ++i) {
        work.add(".png", kLarge);
    }

    work.start(0, 0.0);
    work.finish(0, 10.0, /*told=*/true);

    EXPECT_NEAR(work.secondsLeft(10.0), 20.0, 0.1);
    EXPECT_NEAR(work.doneShare(), 1.0 / 3.0, 0.01);
}

TEST(TimeLeft, FollowsFromTheProgressOfARunningPicture) {
    TimeLeft work(1);
    work.add(".png", kLarge);
    work.add(".png", kLarge);

    work.start(0, 100.0);
    work.advance(0, 0.25);

    EXPECT_NEAR(work.secondsLeft(110.0), 70.0, 0.1);
}

TEST(TimeLeft, IsSharedByTheJobsButNotBelowTheLongestPicture) {
    TimeLeft work(4);
    work.add(".png", kLarge);
    work.add(".png", kLarge);
    work.add(".png", 10.0 * kLarge);

    work.start(0, 0.0);
    work.finish(0, 8.0, /*told=*/true);

    EXPECT_NEAR(work.secondsLeft(8.0), 80.0, 0.5);
}

TEST(TimeLeft, KnowsASpeedForEachEnding) {
    TimeLeft work(1);
    work.add(".jpg", kLarge);
    work.add(".tif", kLarge);
    work.add(".jpg", kLarge);
    work.add(".tif", kLarge);

    work.start(0, 0.0);
    work.finish(0, 50.0, /*told=*/true);
    work.start(1, 50.0);
    work.finish(1, 51.0, /*told=*/true);

    EXPECT_NEAR(work.secondsLeft(51.0), 51.0, 0.5);
}

TEST(TimeLeft, LearnsNothingFromFailures) {
    TimeLeft work(1);
    work.add(".png", kLarge);
    work.add(".png", kLarge);

    work.start(0, 0.0);
    work.finish(0, 0.01, /*told=*/false);

    EXPECT_EQ(work.secondsLeft(1.0), -1.0);
    EXPECT_NEAR(work.doneShare(), 0.5, 0.01);
}

TEST(TimeLeft, OfALatePictureStaysAboveNothing) {
    TimeLeft work(1);
    work.add(".png", kLarge);
    work.add(".png", kLarge);

    work.start(0, 0.0);
    work.finish(0, 10.0, /*told=*/true);
    work.start(1, 10.0);

    EXPECT_NEAR(work.secondsLeft(500.0), 1.0, 0.1);
}

TEST(TimeLeft, APostponedPictureWaitsAgain) {
    TimeLeft work(1);
    work.add(".png", kLarge);
    work.add(".png", kLarge);

    work.start(0, 0.0);
    work.finish(0, 10.0, /*told=*/true);
    work.start(1, 10.0);
    work.advance(1, 0.5);
    work.postpone(1);

    EXPECT_NEAR(work.secondsLeft(12.0), 10.0, 0.1);
    EXPECT_NEAR(work.doneShare(), 0.5, 0.01);
}

}  // namespace
}  // namespace orv::cli
