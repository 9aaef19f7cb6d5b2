#include "wavelets/mirror_extension.h"

#include <algorithm>
#include <cstddef>

#include "images/real_image.h"

namespace orv {

namespace {

/// The position of a line of `length` that stands at `i` of the extended line.
int mirroredPosition(int i, int length, int extended) {
    const int behind = i - length;
    if (behind < 0) {
        return i;
    }
    const int more = extended - length;
    return behind < (more + 1) / 2 ? length - 1 - behind : more - 1 - behind;
}

}  // namespace

std::unique_ptr<RealImage> mirrorExtended(const RealImage& source, int width, int height) {
    std::unique_ptr<RealImage> extended = RealImage::uninitialised(width, height);
    const int sourceHeight = source.height();
    for (int x = 0; x < width; ++x) {
        const double* const from = source.row(mirroredPosition(x, source.width(), width));
        double* const to = extended->row(x);
        std::copy_n(from, static_cast<std::size_t>(sourceHeight), to);
        for (int y = sourceHeight; y < height; ++y) {
            to[y] = from[mirroredPosition(y, sourceHeight, height)];
        }
    }
    return extended;
}

}  // namespace orv
