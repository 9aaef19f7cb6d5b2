#include "filters/blur_margin.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr double kMarginInSigmas = 6.0;
/// The samples that a line starts from.
constexpr int kStart = 3;

/// The place of sample i of a line of n that is mirrored again and again at both ends.
int mirroredPlace(int i, int n) {
    const int inPeriod = ((i % (2 * n)) + 2 * n) % (2 * n);
    return inPeriod < n ? inPeriod : 2 * n - 1 - inPeriod;
}

}  // namespace

int blurMargin(double sigma) {
    return static_cast<int>(std::ceil(kMarginInSigmas * sigma)) + kStart;
}

std::unique_ptr<RealImage> withMirroredMargin(const FloatImage& plane, int margin) {
    auto extended =
        RealImage::uninitialised(plane.width() + 2 * margin, plane.height() + 2 * margin);
    for (int x = 0; x < extended->width(); ++x) {
        const float* const from =
            plane.row(mirroredPlace(std::max(x, kStart - 1) - margin, plane.width()));
        double* const to = extended->row(x);
        for (int y = 0; y < margin; ++y) {
            to[y] = from[mirroredPlace(std::max(y, kStart - 1) - margin, plane.height())];
        }
        std::copy_n(from, plane.height(), to + margin);
        for (int y = margin + plane.height(); y < extended->height(); ++y) {
            to[y] = from[mirroredPlace(y - margin, plane.height())];
        }
    }
    return extended;
}

}  // namespace orv
