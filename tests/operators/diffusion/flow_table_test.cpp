#include "operators/diffusion/flow_table.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(FlowTable, GivesTheKindOfEachNumber) {
    EXPECT_EQ(flowKindOf(1), FlowKind::PeronaMalik);
    EXPECT_EQ(flowKindOf(10), FlowKind::Weickert4);
    EXPECT_EQ(flowKindOf(11), FlowKind::Weickert2);
    EXPECT_EQ(flowKindOf(12), FlowKind::Weickert3);
    EXPECT_EQ(flowKindOf(13), FlowKind::Weickert4);
    EXPECT_EQ(flowKindOf(20), FlowKind::Variational);
    EXPECT_EQ(flowKindOf(21), FlowKind::TotalVariation);
}

TEST(FlowTable, UnknownNumbersArePeronaMalik) {
    for (const int flow : {-1, 0, 2, 9, 14, 22, 1000}) {
        EXPECT_EQ(flowKindOf(flow), FlowKind::PeronaMalik) << flow;
    }
}

}  // namespace
}  // namespace orv
