#include "files/wic_upright.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace orv::cli {

void turnUpright(int orientation, InterleavedSamples& samples) {
    if (orientation < 2 || orientation > 8) {
        return;
    }
    // From 5 on rows are stored as columns; then the two sides are mirrored, or not.
    const bool turned = orientation > 4;
    const bool right =
        orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool down =
        orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const std::size_t pixel =
        static_cast<std::size_t>(samples.channels) * bytesOf(samples.depth);
    const auto width = static_cast<std::size_t>(samples.width);
    const auto height = static_cast<std::size_t>(samples.height);
    std::vector<unsigned char> upright(samples.bytes.size());
    unsigned char* to = upright.data();
    const std::size_t rows = turned ? width : height;
    const std::size_t columns = turned ? height : width;
    for (std::size_t y = 0; y < rows; ++y) {
        for (std::size_t x = 0; x < columns; ++x, to += pixel) {
            std::size_t storedX = turned ? y : x;
            std::size_t storedY = turned ? x : y;
            storedX = right ? width - 1 - storedX : storedX;
            storedY = down ? height - 1 - storedY : storedY;
            std::memcpy(to, &samples.bytes[(storedY * width + storedX) * pixel], pixel);
        }
    }
    samples.bytes = std::move(upright);
    if (turned) {
        std::swap(samples.width, samples.height);
    }
}

}  // namespace orv::cli
