#include "orv/orv_constants.h"

#include <gtest/gtest.h>

#include <string>

#include "exports/keyword.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "solvers/linear_solver_list.h"

namespace orv {
namespace {

TEST(Constants, SolverTableEqualsTheCatalogue) {
    const LinearSolverList list(/*capacity=*/50, /*groupCapacity=*/10);
    int next = 0;

#define ORV_EXPECT_SOLVER(identifier, id, text)    \
    EXPECT_EQ(id, next);                           \
    EXPECT_EQ(ORV_SOLVER_##identifier, next);      \
    EXPECT_EQ(std::string(list.name(next)), text); \
    ++next;
    ORV_SOLVER_TABLE(ORV_EXPECT_SOLVER)
#undef ORV_EXPECT_SOLVER

    EXPECT_EQ(next, ORV_SOLVER_COUNT);
    EXPECT_EQ(list.count(), ORV_SOLVER_COUNT);
    EXPECT_EQ(ORV_SOLVER_DENOISER_DEFAULT, 29);
}

TEST(Constants, SchemeKeywordsMeanTheirSchemes) {
    EXPECT_EQ(schemeNumber(ORV_SCHEME_2D_SEMI), kScheme2DSemi);
    EXPECT_EQ(schemeNumber(ORV_SCHEME_2D_IMPLICIT), kScheme2DImplicit);
    EXPECT_EQ(schemeNumber(ORV_SCHEME_LOD), kSchemeLod);
    EXPECT_EQ(schemeNumber(ORV_SCHEME_AFI), kSchemeAfi);
    EXPECT_EQ(schemeNumber(ORV_SCHEME_ADI), kSchemeAdi);
    EXPECT_EQ(schemeNumber(ORV_SCHEME_AOS), kSchemeAos);
    EXPECT_EQ(schemeNumber(ORV_SCHEME_AMOS), kSchemeAmos);
}

TEST(Constants, FlowKeywordsMeanTheirFlows) {
    EXPECT_EQ(denoiserFlowNumber(ORV_FLOW_PERONA_MALIK), kFlowPeronaMalik);
    EXPECT_EQ(denoiserFlowNumber(ORV_FLOW_WEICKERT2), kFlowWeickert2);
    EXPECT_EQ(denoiserFlowNumber(ORV_FLOW_WEICKERT3), kFlowWeickert3);
    EXPECT_EQ(denoiserFlowNumber(ORV_FLOW_WEICKERT4), kFlowWeickert4);
    EXPECT_EQ(denoiserFlowNumber(ORV_FLOW_WEICKERT), kFlowWeickert);
    EXPECT_EQ(restorationFlowNumber(ORV_FLOW_VARIATIONAL), kFlowVariational);
    EXPECT_EQ(restorationFlowNumber(ORV_FLOW_TOTAL_VARIATION), kFlowTotalVariation);
}

TEST(Constants, VersionIsThatOfTheProject) {
    const std::string numbers = std::to_string(ORV_VERSION_MAJOR) + "." +
                                std::to_string(ORV_VERSION_MINOR) + "." +
                                std::to_string(ORV_VERSION_PATCH);

    EXPECT_EQ(numbers, ORV_PROJECT_VERSION);
    EXPECT_EQ(std::string(ORV_VERSION_STRING), ORV_PROJECT_VERSION);
}

}  // namespace
}  // namespace orv
