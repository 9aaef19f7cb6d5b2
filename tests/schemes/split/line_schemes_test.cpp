#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "exports/work_window.h"
#include "images/float_image3.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/flows/fidelity_diffusion_flow.h"
#include "schemes/full/heat_flow_operator.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

/// Float line solves and products on grey levels against double precision.
constexpr double kGreyLevels = 1e-3;

/// All line schemes on one path against dense algebra.
void expectDenseSteps(bool plainPath) {
    for (const auto& [w, h] : {std::pair{2, 2}, std::pair{2, 5}, std::pair{3, 3},
                               std::pair{7, 4}, std::pair{6, 9}}) {
        const FloatImage plane = noisePlane(w, h, 1);
        for (const Scheme scheme : kLineSchemes) {
            for (const double tau : {0.25, 1.0, 2.5, 10.0}) {
                SCOPED_TRACE(std::string(nameOf(scheme)) + " " + std::to_string(w) + "x" +
                             std::to_string(h) + " " + std::to_string(tau));
                DiffusionFlow flow(0.7, 25.0, 0, 0);
                flow.setPlainPath(plainPath);

                const auto result =
                    makeScheme(scheme, &flow, {.tau = tau, .plainPath = plainPath})
                        ->apply(plane, nullptr);

                const DensePlane g(*flow.diffusivityPlane());
                EXPECT_LT(largestDifference(*result,
                                            denseStep(scheme, DensePlane(plane), g, tau, true)),
                          kGreyLevels);
            }
        }
    }
}

TEST(LineSchemes, AgreeWithADenseSolutionOfTheSameStep) {
    expectDenseSteps(/*plainPath=*/false);
}

TEST(LineSchemes, AgreeWithADenseSolutionOnThePlainPath) {
    expectDenseSteps(/*plainPath=*/true);
}

TEST(LineSchemes, TakeOneExplicitStepWithoutTheFlag) {
    const FloatImage plane = noisePlane(6, 7, 2);
    for (const Scheme scheme : {Scheme::Adi, Scheme::Amos}) {
        SCOPED_TRACE(nameOf(scheme));
        DiffusionFlow flow(0.0, 25.0, 0, 0);

        const auto result = makeScheme(scheme, &flow, {.tau = 3.0, .cflSubsteps = false})
                                ->apply(plane, nullptr);

        const DensePlane g(*flow.diffusivityPlane());
        const DensePlane u(plane);
        EXPECT_LT(largestDifference(*result, denseStep(scheme, u, g, 3.0, false)), kGreyLevels);
        EXPECT_GT(largestDifference(*result, denseStep(scheme, u, g, 3.0, true)), kGreyLevels);
    }
}

TEST(LineSchemes, StartFromTheRightSideAndAosFromZeros) {
    // Solver 2 without a sweep hands its start vector back.
    const SchemeArguments noSweep{.solverId = 2, .solverIterations = 0};
    const FloatImage plane = noisePlane(5, 6, 12);
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const auto run = [&](Scheme scheme) {
        return makeScheme(scheme, &flow, noSweep)->apply(plane, nullptr);
    };

    EXPECT_TRUE(sameBits(*run(Scheme::Lod), plane));
    EXPECT_TRUE(sameBits(*run(Scheme::Afi), plane));
    EXPECT_TRUE(sameBits(*run(Scheme::Aos), FloatImage(5, 6)));
}

TEST(LineSchemes, UpdateOnceAndUpdateEachStepGiveOneResult) {
    const FloatImage plane = noisePlane(5, 6, 3);
    for (const Scheme scheme : kAllSchemes) {
        DiffusionFlow once(0.0, 25.0, 0, 0);
        DiffusionFlow each(0.0, 25.0, 0, 0);

        const auto a =
            makeScheme(scheme, &once, {.updateEachStep = false})->apply(plane, nullptr);
        const auto b =
            makeScheme(scheme, &each, {.updateEachStep = true})->apply(plane, nullptr);

        EXPECT_TRUE(sameBits(*a, *b)) << nameOf(scheme);
    }
}

TEST(LineSchemes, IterationsAboveOneGiveTheResultOfOneWithoutPresmoothing) {
    const FloatImage plane = noisePlane(5, 6, 4);
    for (const Scheme scheme : kAllSchemes) {
        DiffusionFlow one(0.05, 25.0, 0, 0);
        DiffusionFlow three(0.05, 25.0, 0, 0);

        const auto a = makeScheme(scheme, &one)->apply(plane, nullptr);
        const auto b = makeScheme(scheme, &three, {.iterations = 3})->apply(plane, nullptr);

        EXPECT_TRUE(sameBits(*a, *b)) << nameOf(scheme);
    }
}

/// A flow whose diffusivity is that of a given plane, whatever the scheme shows it.
class FixedFlow final : public DiffusionFlow {
  public:
    explicit FixedFlow(const FloatImage& plane)
        : DiffusionFlow(0.0, 25.0, 0, 0), plane_(plane) {}
    void update(const FloatImage& /*plane*/) override { DiffusionFlow::update(plane_); }

  private:
    const FloatImage& plane_;
};

TEST(LineSchemes, WithPresmoothingEveryStepAndPlaneSmoothsTheFirstPlaneOnceMore) {
    const FloatImage3 planes = noisePlanes(6, 5, 5);
    const int iterations = 2;
    for (const Scheme scheme : kLineSchemes) {
        DiffusionFlow flow(1.0, 25.0, 0, 0);
        const auto operation = makeScheme(scheme, &flow, {.iterations = iterations});

        const auto results = FloatPlanesOperator(operation.get()).apply(planes, nullptr);

        for (int c = 0; c < 3; ++c) {
            SCOPED_TRACE(std::string(nameOf(scheme)) + " plane " + std::to_string(c));
            HeatFlowOperator heat(0, c * iterations + iterations, 1, 0.5f, 0.0001f);
            const auto smoothed = heat.apply(planes.plane(0), nullptr);
            FixedFlow fixed(*smoothed);
            const auto expected = makeScheme(scheme, &fixed)->apply(planes.plane(c), nullptr);
            EXPECT_TRUE(sameBits(results->plane(c), *expected));
        }
    }
}

TEST(LineSchemes, SecondPlaneReusesTheMatricesWithoutATrace) {
    const FloatImage first = noisePlane(6, 5, 6);
    const FloatImage second = noisePlane(6, 5, 7);
    for (const Scheme scheme : kLineSchemes) {
        DiffusionFlow flow(0.0, 25.0, 0, 0);
        DiffusionFlow freshFlow(0.0, 25.0, 0, 0);
        const auto used = makeScheme(scheme, &flow);
        used->apply(first, nullptr);

        const auto again = used->apply(second, nullptr);

        const auto fresh = makeScheme(scheme, &freshFlow)->apply(second, nullptr);
        EXPECT_TRUE(sameBits(*again, *fresh)) << nameOf(scheme);
    }
}

TEST(LineSchemes, PlainPathGivesTheSameBits) {
    for (const auto& [w, h] :
         {std::pair{2, 2}, std::pair{3, 7}, std::pair{19, 37}, std::pair{40, 5}}) {
        const FloatImage plane = noisePlane(w, h, 8);
        for (const Scheme scheme : kLineSchemes) {
            for (const double fidelity : {0.0, 0.4}) {
                SCOPED_TRACE(std::string(nameOf(scheme)) + " " + std::to_string(w) + "x" +
                             std::to_string(h) + " " + std::to_string(fidelity));
                FidelityDiffusionFlow plainFlow(0.7, 25.0, fidelity, 0, 0);
                FidelityDiffusionFlow flow(0.7, 25.0, fidelity, 0, 0);
                plainFlow.setPlainPath(true);

                const auto plain =
                    makeScheme(scheme, &plainFlow, {.tau = 2.5, .plainPath = true})
                        ->apply(plane, nullptr);

                const auto quick =
                    makeScheme(scheme, &flow, {.tau = 2.5})->apply(plane, nullptr);
                EXPECT_TRUE(sameBits(*quick, *plain));
            }
        }
    }
}

TEST(LineSchemes, BothPathsKeepTheSignOfZero) {
    const FloatImage plane(20, 20, -0.0f);
    for (const Scheme scheme : kLineSchemes) {
        DiffusionFlow plainFlow(0.0, 25.0, 0, 0);
        DiffusionFlow flow(0.0, 25.0, 0, 0);

        const auto plain =
            makeScheme(scheme, &plainFlow, {.plainPath = true})->apply(plane, nullptr);
        const auto quick = makeScheme(scheme, &flow)->apply(plane, nullptr);

        EXPECT_TRUE(sameBits(*quick, *plain)) << nameOf(scheme);
    }
}

TEST(LineSchemes, PlanesOfOneRowOrColumnComeBackFromTheImplicitSchemes) {
    for (const auto& [w, h] : {std::pair{1, 1}, std::pair{1, 5}, std::pair{5, 1}}) {
        const FloatImage plane = noisePlane(w, h, 9);
        for (const Scheme scheme : {Scheme::Lod, Scheme::Afi, Scheme::Aos}) {
            DiffusionFlow flow(1.0, 25.0, 0, 0);
            EXPECT_TRUE(sameBits(*makeScheme(scheme, &flow)->apply(plane, nullptr), plane))
                << nameOf(scheme) << w << "x" << h;
        }
    }
}

/// Keeps the shares and asks to stop at the given one.
class Account final : public WorkObserver {
  public:
    explicit Account(double stopAt) : stopAt_(stopAt) {}
    bool onWork(double done) override {
        rising = rising && done >= last;
        last = done;
        ++calls;
        return done < stopAt_;
    }

    bool rising = true;
    double last = 0.0;
    int calls = 0;

  private:
    double stopAt_;
};

TEST(AllSchemes, AccountOfTheWorkRisesFromZeroTowardsOne) {
    const FloatImage plane = noisePlane(40, 50, 10);
    for (const Scheme scheme : kLineSchemes) {
        SCOPED_TRACE(nameOf(scheme));
        Account account(/*stopAt=*/2.0);
        DiffusionFlow flow(0.0, 25.0, 0, 0);
        {
            const WorkObserverScope scope(&account);
            makeScheme(scheme, &flow)->apply(plane, nullptr);
        }

        // Three reports a pass along y, four along x.
        const bool twoPasses = scheme == Scheme::Lod || scheme == Scheme::Aos;
        EXPECT_EQ(account.calls, twoPasses ? 7 : 14);
        EXPECT_TRUE(account.rising);
        EXPECT_GT(account.last, 0.85);
        EXPECT_LE(account.last, 1.0);
    }
}

TEST(AllSchemes, StopEarlyWhenTheObserverAsksForIt) {
    const FloatImage plane = noisePlane(40, 50, 11);
    for (const Scheme scheme : kAllSchemes) {
        SCOPED_TRACE(nameOf(scheme));
        Account account(/*stopAt=*/0.2);
        DiffusionFlow flow(0.0, 25.0, 0, 0);
        const WorkObserverScope scope(&account);

        // Solver 2 keeps the whole-plane schemes short.
        const auto result =
            makeScheme(scheme, &flow, {.solverId = 2, .iterations = 3})->apply(plane, nullptr);

        ASSERT_NE(result, nullptr);
        EXPECT_TRUE(workCancelled());
        EXPECT_LT(account.last, 0.5);
    }
}

TEST(Quirk, SharedPrintNames) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);
    const auto text = [&](Scheme scheme) { return printedName(*makeScheme(scheme, &flow)); };

    EXPECT_EQ(text(Scheme::Lod), "AOS 2D restoration\n");
    EXPECT_EQ(text(Scheme::Afi), "AOS 2D restoration\n");
    EXPECT_EQ(text(Scheme::Aos), "AOS 2D restoration\n");
    EXPECT_EQ(text(Scheme::Semi), "Full 2D Semi-Implicit restoration\n");
    EXPECT_EQ(text(Scheme::Implicit), "Full 2D Semi-Implicit restoration\n");
}

TEST(AllSchemes, SchemesWithATextOfTheirOwnPrintIt) {
    DiffusionFlow flow(0.0, 25.0, 0, 0);

    EXPECT_EQ(printedName(*makeScheme(Scheme::Adi, &flow)), "CFL ADI 2D restoration\n");
    EXPECT_EQ(printedName(*makeScheme(Scheme::Amos, &flow)), "Amos 2D restoration\n");
}

}  // namespace
}  // namespace orv::test
