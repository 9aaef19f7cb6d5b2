#include <cstddef>
#include <cstring>

#include "files/image_file.h"

namespace orv::cli {

void dropAlpha(Picture& picture) {
    if (!picture.alpha) {
        return;
    }
    InterleavedSamples& samples = picture.samples;
    const std::size_t sample = bytesOf(samples.depth);
    const std::size_t before = sample * static_cast<std::size_t>(samples.channels);
    const std::size_t after = before - sample;
    const std::size_t pixels = samples.bytes.size() / before;
    for (std::size_t i = 1; i < pixels; ++i) {
        std::memmove(samples.bytes.data() + i * after, samples.bytes.data() + i * before,
                     after);
    }
    samples.bytes.resize(pixels * after);
    samples.bytes.shrink_to_fit();
    samples.channels -= 1;
    picture.alpha = false;
}

}  // namespace orv::cli
