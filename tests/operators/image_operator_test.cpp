#include "operators/image_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "operators/color_space_transform.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::SampleImage;

// Counts its runs and gives the target back.
class CountingOperator : public ImageOperator {
  public:
    std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target) override {
        ++runs;
        return target != nullptr ? std::move(target) : source.clone();
    }
    int runs = 0;
};

TEST(ImageOperator, StartsWithItsDocumentedValues) {
    const CountingOperator op;

    EXPECT_EQ(op.bits(), 8);
    EXPECT_EQ(op.reservedFlag(), 0);
    EXPECT_EQ(op.reservedNumber(), 0);
    EXPECT_EQ(op.regionKey(), 255);
    EXPECT_EQ(op.regionCount(), 0);
}

TEST(ImageOperator, SettersAreReadBack) {
    CountingOperator op;

    op.setBits(16);
    op.setReservedFlag(7);
    op.setReservedNumber(-3);
    op.setRegionKey(9);
    op.hook();

    EXPECT_EQ(op.bits(), 16);
    EXPECT_EQ(op.reservedFlag(), 7);
    EXPECT_EQ(op.reservedNumber(), -3);
    EXPECT_EQ(op.regionKey(), 9);
}

TEST(ImageOperator, RegionListsInteriorHitsColumnByColumn) {
    CountingOperator op;
    SampleImage mask(4, 5, 1);
    for (const auto& [x, y] : {std::pair{0, 0}, {2, 1}, {1, 3}, {1, 1}, {3, 2}, {2, 4}}) {
        mask.setValue(x, y, 255);
    }
    mask.setValue(2, 2, 254);

    op.prepareRegion(mask);

    ASSERT_EQ(op.regionCount(), 3);
    EXPECT_EQ(op.regionXs(), (std::vector<int>{1, 1, 2}));
    EXPECT_EQ(op.regionYs(), (std::vector<int>{1, 3, 1}));
}

TEST(ImageOperator, RegionFollowsItsKey) {
    CountingOperator op;
    SampleImage mask(3, 3, 1);
    mask.setValue(1, 1, 4);

    op.prepareRegion(mask);
    const int withDefaultKey = op.regionCount();
    op.setRegionKey(4);
    op.prepareRegion(mask);

    EXPECT_EQ(withDefaultKey, 0);
    EXPECT_EQ(op.regionCount(), 1);
}

TEST(ImageOperator, RegionBuiltTwiceHasNoSpareEntries) {
    CountingOperator op;
    SampleImage mask(3, 3, 1);
    mask.setValue(1, 1, 255);

    op.prepareRegion(mask);
    op.prepareRegion(mask);

    EXPECT_EQ(op.regionCount(), 1);
    EXPECT_EQ(op.regionXs().size(), 1U);
}

TEST(ImageOperator, RegionIsEmptyOnAnImageNarrowerOrLowerThanThree) {
    for (const auto& [w, h] : {std::pair{2, 9}, {9, 2}, {1, 1}, {2, 2}}) {
        CountingOperator op;
        SampleImage mask(w, h, 1);
        for (int x = 0; x < w; ++x) {
            for (int y = 0; y < h; ++y) {
                mask.setValue(x, y, 255);
            }
        }

        op.prepareRegion(mask);

        EXPECT_EQ(op.regionCount(), 0) << w << " x " << h;
    }
}

TEST(ImageOperator, ReleaseEmptiesTheRegionAndTheDestructorFollowsSafely) {
    auto op = std::make_unique<CountingOperator>();
    SampleImage mask(3, 3, 1);
    mask.setValue(1, 1, 255);
    op->prepareRegion(mask);

    op->releaseRegion();

    EXPECT_EQ(op->regionCount(), 0);
    op->releaseRegion();
    op.reset();
}

TEST(ImageOperator, AdoptsListsMadeElsewhere) {
    CountingOperator op;

    op.setRegion(2, {5, 6}, {7, 8});

    EXPECT_EQ(op.regionCount(), 2);
    EXPECT_EQ(op.regionXs(), (std::vector<int>{5, 6}));
    EXPECT_EQ(op.regionYs(), (std::vector<int>{7, 8}));
}

TEST(ImageOperator, EveryFormOfApplyComesToApply) {
    CountingOperator op;
    const SampleImage source(2, 2, 3);
    const SampleImage mask(2, 2, 1);
    auto target = source.clone();
    const DiscreteImage* const given = target.get();

    target = op.applyWithTransform(nullptr, source, std::move(target));
    target = op.applyMaskedWithTransform(nullptr, mask, source, std::move(target));
    target = op.applyMasked(mask, source, std::move(target));

    EXPECT_EQ(op.runs, 3);
    EXPECT_EQ(target.get(), given);
}

}  // namespace
}  // namespace orv
