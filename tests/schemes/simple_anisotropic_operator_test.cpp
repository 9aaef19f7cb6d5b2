#include "schemes/simple_anisotropic_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "algebra/matrix.h"
#include "exports/work_window.h"
#include "images/float_image.h"
#include "schemes/flows/flow.h"
#include "schemes/plane_operators/plane_operator_fakes.h"
#include "support/progress_range.h"

namespace orv {
namespace {

using test::isFlat;
using test::nameOf;
using test::ProgressRange;

/// Notes which hooks were called.
class NotingFlow : public Flow {
  public:
    void prepare(const FloatImage& plane) override {
        log += 'p';
        prepared = &plane;
    }
    void update(const FloatImage& plane) override {
        log += 'u';
        updated = &plane;
    }
    std::unique_ptr<Matrix> fullMatrix(float, const FloatImage&,
                                       std::unique_ptr<Matrix> m) override {
        return m;
    }
    std::unique_ptr<Matrix> lineMatrixX(float, const FloatImage&, int,
                                        std::unique_ptr<Matrix> m) override {
        return m;
    }
    std::unique_ptr<Matrix> lineMatrixY(float, const FloatImage&, int,
                                        std::unique_ptr<Matrix> m) override {
        return m;
    }

    std::string log;
    const FloatImage* prepared = nullptr;
    const FloatImage* updated = nullptr;
};

struct Step {
    int low;
    int high;
    const FloatImage* source;
    float targetBefore;
};

/// target = source + 1, noting the window and the planes.
class AddOneScheme : public SimpleAnisotropicOperator {
  public:
    AddOneScheme(int iterations, Flow* flow, bool updateEachStep = true)
        : SimpleAnisotropicOperator(iterations, 7, 0.1, flow, true, updateEachStep) {}

    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override {
        const ProgressWindow& window = progressWindow();
        steps.push_back({window.progressLow, window.progressHigh, &source, target->row(0)[0]});
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            target->data()[i] = source.data()[i] + 1.0F;
        }
        return target;
    }
    float tau() const { return tau_; }
    double tolerance() const { return tolerance_; }
    int solverIterations() const { return solverIterations_; }

    std::vector<Step> steps;
};

/// Asks to stop at once.
class StopAtOnce : public WorkObserver {
  public:
    bool onWork(double done) override {
        last = done;
        return false;
    }
    double last = 0.0;
};

TEST(SimpleAnisotropicOperator, StoresItsSettings) {
    NotingFlow flow;
    const AddOneScheme scheme(3, &flow);

    EXPECT_EQ(scheme.tau(), 0.1F);
    EXPECT_EQ(scheme.tolerance(), 0.0001);
    EXPECT_EQ(scheme.solverIterations(), 7);
    EXPECT_EQ(nameOf(scheme), "Simple Anisotropic Operator\n");
}

TEST(SimpleAnisotropicOperator, StepsOnceFromTheSourceItself) {
    NotingFlow flow;
    AddOneScheme scheme(1, &flow);
    const FloatImage source(4, 3, 5.0F);
    const ProgressRange range(10, 50);

    const auto result = scheme.apply(source, nullptr);

    EXPECT_TRUE(isFlat(*result, 6.0));
    ASSERT_EQ(scheme.steps.size(), 1U);
    EXPECT_EQ(scheme.steps[0].source, &source);
    EXPECT_EQ(scheme.steps[0].targetBefore, 5.0F);
    EXPECT_EQ(scheme.steps[0].low, 10);
    EXPECT_EQ(scheme.steps[0].high, 50);
    EXPECT_EQ(flow.prepared, &source);
}

TEST(SimpleAnisotropicOperator, UpdatesTheFlowOnceUnlessTheStepDoes) {
    for (const int iterations : {0, 1, 3}) {
        NotingFlow flow;
        AddOneScheme once(iterations, &flow, /*updateEachStep=*/false);
        AddOneScheme each(iterations, &flow, /*updateEachStep=*/true);
        const FloatImage source(4, 3);

        (void)once.apply(source, nullptr);
        EXPECT_EQ(flow.log, "pu");
        EXPECT_EQ(flow.updated, &source);
        (void)each.apply(source, nullptr);
        EXPECT_EQ(flow.log, "pup");
    }
}

TEST(SimpleAnisotropicOperator, ClonesTheSourceForNoIterations) {
    for (const int iterations : {0, -4}) {
        NotingFlow flow;
        AddOneScheme scheme(iterations, &flow, /*updateEachStep=*/false);
        const FloatImage source(4, 3, 5.0F);
        const ProgressRange range(10, 50);

        const auto result = scheme.apply(source, FloatImage(4, 3, 77.0F).clone());

        EXPECT_TRUE(isFlat(*result, 5.0));
        EXPECT_NE(result.get(), &source);
        EXPECT_TRUE(scheme.steps.empty());
        EXPECT_EQ(flow.log, "pu");
        EXPECT_EQ(progressWindow().progressLow, 10);
        EXPECT_EQ(progressWindow().progressHigh, 50);
    }
}

TEST(SimpleAnisotropicOperator, ConsumesTheTargetAndStartsFromTheSource) {
    NotingFlow flow;
    AddOneScheme scheme(1, &flow);
    const FloatImage source(4, 3, 5.0F);
    const int sizes[][2] = {{4, 3}, {3, 4}, {9, 9}, {1, 1}};
    for (const auto& size : sizes) {
        auto given = std::make_unique<FloatImage>(size[0], size[1], 77.0F);

        const auto result = scheme.apply(source, std::move(given));

        EXPECT_EQ(scheme.steps.back().targetBefore, 5.0F);
        EXPECT_EQ(result->width(), 4);
        EXPECT_EQ(result->height(), 3);
        EXPECT_TRUE(isFlat(*result, 6.0));
    }
}

TEST(SimpleAnisotropicOperator, GivesACloneEvenInTheMemoryOfAChannelPlane) {
    NotingFlow flow;
    AddOneScheme scheme(0, &flow);
    FloatImage source(2, 2, 5.0F);
    source.setFlag(3);
    const RgbDiscreteImage image(2, 2);

    const auto reused = scheme.apply(source, FloatImage(2, 2).clone());
    const auto fromChannel = scheme.apply(source, std::make_unique<FloatImage>(image, 2));

    EXPECT_EQ(reused->flag(), 3);
    EXPECT_EQ(fromChannel->flag(), 3);
    EXPECT_EQ(fromChannel->channel(), 0);
    EXPECT_TRUE(isFlat(*fromChannel, 5.0));
}

TEST(SimpleAnisotropicOperator, ServesPlanesOfChangingSize) {
    NotingFlow flow;
    AddOneScheme scheme(2, &flow);
    for (const int width : {3, 8, 1, 8}) {
        const FloatImage source(width, 5, static_cast<float>(width));

        EXPECT_TRUE(isFlat(*scheme.apply(source, nullptr), width + 1.0));
        EXPECT_NE(scheme.steps.back().source, &source);
    }
}

TEST(SimpleAnisotropicOperator, ReportsEachStepAndEndsEarlyWhenCancelled) {
    NotingFlow flow;
    AddOneScheme scheme(4, &flow);
    StopAtOnce observer;
    const WorkObserverScope scope(&observer);

    (void)scheme.apply(FloatImage(2, 2), nullptr);

    EXPECT_DOUBLE_EQ(observer.last, 0.25);
    EXPECT_EQ(scheme.steps.size(), 1U);
}

TEST(SimpleAnisotropicOperator, GivesTheSamplesOfOneIterationForThree) {
    NotingFlow flow;
    AddOneScheme one(1, &flow);
    AddOneScheme three(3, &flow);
    const FloatImage source(4, 3, 5.0F);

    // Every step reads the untouched source, since the assign between steps is empty.
    EXPECT_TRUE(isFlat(*one.apply(source, nullptr), 6.0));
    EXPECT_TRUE(isFlat(*three.apply(source, nullptr), 6.0));
    EXPECT_EQ(three.steps.size(), 3U);
}

TEST(Quirk, ProgressTimeLoop) {
    NotingFlow flow;
    AddOneScheme scheme(3, &flow);
    const ProgressRange range(0, 100);

    (void)scheme.apply(FloatImage(2, 2), nullptr);

    // d = 100: the lower end gains 0, 33, 66 and the upper 33, 66, 100, each on what it was.
    const int lows[] = {0, 33, 99};
    const int highs[] = {133, 199, 299};
    ASSERT_EQ(scheme.steps.size(), 3U);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(scheme.steps[static_cast<std::size_t>(i)].low, lows[i]);
        EXPECT_EQ(scheme.steps[static_cast<std::size_t>(i)].high, highs[i]);
    }
}

TEST(SimpleAnisotropicOperator, AddsTheSharesToARangeThatStartsAboveZero) {
    NotingFlow flow;
    AddOneScheme scheme(2, &flow);
    const ProgressRange range(33, 66);

    (void)scheme.apply(FloatImage(2, 2), nullptr);

    ASSERT_EQ(scheme.steps.size(), 2U);
    EXPECT_EQ(scheme.steps[0].low, 33);
    EXPECT_EQ(scheme.steps[0].high, 66 + 16);
    EXPECT_EQ(scheme.steps[1].low, 33 + 16);
    EXPECT_EQ(scheme.steps[1].high, 66 + 16 + 33);
    EXPECT_EQ(progressWindow().progressLow, 49);
    EXPECT_EQ(progressWindow().progressHigh, 115);
}

}  // namespace
}  // namespace orv
