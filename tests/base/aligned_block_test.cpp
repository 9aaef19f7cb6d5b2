#include "base/aligned_block.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <utility>

namespace orv {
namespace {

TEST(AlignedBlock, StartsOnTheBoundary) {
    for (const std::size_t bytes : {std::size_t{1}, std::size_t{100}, std::size_t{5} << 20}) {
        const AlignedBlock block(bytes, 32);

        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.data()) % 32, 0U);
        std::memset(block.data(), 1, bytes);
    }
}

TEST(AlignedBlock, MovesItsMemory) {
    AlignedBlock first(64, 32);
    void* data = first.data();

    AlignedBlock second = std::move(first);

    EXPECT_EQ(second.data(), data);
    EXPECT_EQ(second.bytes(), 64U);
}

}  // namespace
}  // namespace orv
