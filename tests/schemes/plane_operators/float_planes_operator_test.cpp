#include "schemes/plane_operators/float_planes_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "exports/work_window.h"
#include "schemes/plane_operators/plane_operator_fakes.h"
#include "support/progress_range.h"

namespace orv {
namespace {

using test::AddOneFloat;
using test::isFlat;
using test::nameOf;
using test::ProgressRange;

std::unique_ptr<FloatImage3> source(int base = 10) {
    return test::steppedPlanes<FloatImage3>(4, 3, base);
}

void expectFlat(const FloatImage3& planes, double base) {
    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(isFlat(planes.plane(c), base + 100 * c)) << c;
    }
}

/// Notes each share and asks to stop at the given one.
class StoppingObserver : public WorkObserver {
  public:
    explicit StoppingObserver(double stopAt) : stopAt_(stopAt) {}
    bool onWork(double done) override {
        shares.push_back(done);
        return done < stopAt_;
    }
    std::vector<double> shares;

  private:
    double stopAt_;
};

TEST(FloatPlanesOperator, RunsTheOperatorOnEachPlaneWithItsGuide) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    const auto in = source();

    const auto out = planes.apply(*in, nullptr);

    expectFlat(*out, 11.0);
    expectFlat(*in, 10.0);
    ASSERT_EQ(op.calls.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        const test::Call& call = op.calls[static_cast<std::size_t>(c)];
        EXPECT_EQ(call.source, &in->plane(c));
        EXPECT_EQ(call.guide, &in->plane(c));
        EXPECT_FALSE(call.masked);
    }
    EXPECT_EQ(nameOf(planes), "");
}

TEST(FloatPlanesOperator, WritesIntoTheTargetThatIsGiven) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    auto target = source(50);
    const FloatImage3* const address = target.get();

    target = planes.apply(*source(), std::move(target));

    EXPECT_EQ(target.get(), address);
    expectFlat(*target, 11.0);
}

TEST(FloatPlanesOperator, NarrowsTheWindowToAThirdForEachPlane) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    const ProgressRange range(0, 100);

    (void)planes.apply(*source(), nullptr);

    ASSERT_EQ(op.calls.size(), 3U);
    EXPECT_EQ(op.calls[0].low, 0);
    EXPECT_EQ(op.calls[0].high, 33);
    EXPECT_EQ(op.calls[1].low, 33);
    EXPECT_EQ(op.calls[1].high, 66);
    EXPECT_EQ(op.calls[2].low, 66);
    EXPECT_EQ(op.calls[2].high, 100);
    EXPECT_EQ(progressWindow().progressLow, 66);
    EXPECT_EQ(progressWindow().progressHigh, 100);
}

TEST(FloatPlanesOperator, LeavesTheWindowAloneInTheMaskedForm) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    const RgbDiscreteImage mask(4, 3);
    const ProgressRange range(30, 60);
    const auto in = source();

    const auto out = planes.applyMasked(mask, *in, nullptr);

    expectFlat(*out, 11.0);
    ASSERT_EQ(op.calls.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        const test::Call& call = op.calls[static_cast<std::size_t>(c)];
        EXPECT_TRUE(call.masked);
        EXPECT_EQ(call.low, 30);
        EXPECT_EQ(call.high, 60);
        EXPECT_EQ(call.guide, &in->plane(c));
    }
    EXPECT_EQ(op.lastMask, &mask);
    EXPECT_EQ(progressWindow().progressLow, 30);
    EXPECT_EQ(progressWindow().progressHigh, 60);
}

TEST(FloatPlanesOperator, GivesTheResultOfOnePassWhenIterated) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    const RgbDiscreteImage mask(4, 3);

    expectFlat(*planes.iterate(3, *source(), nullptr), 11.0);
    expectFlat(*planes.iterateMasked(3, mask, *source(), nullptr), 11.0);
    EXPECT_EQ(op.calls.size(), 18U);
}

TEST(FloatPlanesOperator, IteratesNothingForACountOfZeroOrLess) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);

    expectFlat(*planes.iterate(0, *source(), nullptr), 10.0);
    expectFlat(*planes.iterate(-1, *source(), source(70)), 70.0);
    EXPECT_TRUE(op.calls.empty());
}

TEST(FloatPlanesOperator, ReportsAThirdOfTheWorkAfterEachPlane) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    StoppingObserver observer(2.0);
    const WorkObserverScope scope(&observer);

    (void)planes.apply(*source(), nullptr);

    ASSERT_EQ(observer.shares.size(), 3U);
    EXPECT_DOUBLE_EQ(observer.shares[0], 1.0 / 3.0);
    EXPECT_DOUBLE_EQ(observer.shares[1], 2.0 / 3.0);
    EXPECT_DOUBLE_EQ(observer.shares[2], 1.0);
}

TEST(FloatPlanesOperator, EndsEarlyWhenTheWorkIsCancelled) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    StoppingObserver observer(0.3);
    const WorkObserverScope scope(&observer);

    (void)planes.apply(*source(), nullptr);

    EXPECT_EQ(op.calls.size(), 1U);
}

/// A clone of the source with 1 added; takes no notice of the target but whether there is one.
class AddOneToAClone : public FloatOperator {
  public:
    AddOneToAClone() { dropsTarget_ = true; }
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override {
        targets += target ? 1 : 0;
        target = source.clone();
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            target->data()[i] += 1.0F;
        }
        return target;
    }
    int targets = 0;
};

TEST(FloatPlanesOperator, MakesNoPlanesForAnOperatorThatDropsItsTarget) {
    AddOneToAClone op;
    FloatPlanesOperator planes(&op);
    const auto in = source();
    in->setFlag(3);

    const auto out = planes.apply(*in, nullptr);

    expectFlat(*out, 11.0);
    EXPECT_EQ(op.targets, 0);
    EXPECT_EQ(out->width(), 4);
    EXPECT_EQ(out->height(), 3);
    EXPECT_EQ(out->flag(), 3);
}

TEST(FloatPlanesOperator, LeavesClonesOfTheSourceWhereItWasCancelled) {
    AddOneFloat keeping;
    AddOneToAClone dropping;
    for (FloatOperator* const op :
         {static_cast<FloatOperator*>(&keeping), static_cast<FloatOperator*>(&dropping)}) {
        FloatPlanesOperator planes(op);
        StoppingObserver observer(0.3);
        const WorkObserverScope scope(&observer);

        const auto out = planes.apply(*source(), nullptr);

        EXPECT_TRUE(isFlat(out->plane(0), 11.0));
        EXPECT_TRUE(isFlat(out->plane(1), 110.0));
        EXPECT_TRUE(isFlat(out->plane(2), 210.0));
    }
}

TEST(FloatPlanesOperator, TakesOverATargetOfAnotherSizeAfterItsFirstPass) {
    AddOneToAClone op;
    FloatPlanesOperator planes(&op);

    // The assign to the work planes copies as long as the sizes differ, that is once.
    const auto out = planes.iterate(3, *source(), std::make_unique<FloatImage3>(2, 2));

    expectFlat(*out, 12.0);
}

TEST(Quirk, ProgressSlice) {
    AddOneFloat op;
    FloatPlanesOperator planes(&op);
    const ProgressRange range(30, 60);

    (void)planes.apply(*source(), nullptr);

    ASSERT_EQ(op.calls.size(), 3U);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(op.calls[static_cast<std::size_t>(c)].low, 10 * c);
        EXPECT_EQ(op.calls[static_cast<std::size_t>(c)].high, 10 * (c + 1));
    }
    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
}

}  // namespace
}  // namespace orv
