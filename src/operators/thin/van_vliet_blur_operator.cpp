#include "operators/thin/van_vliet_blur_operator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/rounding.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "filters/float_recursive_2d_blur_operator.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "images/discrete_image.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "schemes/plane_operators/progress_share.h"

namespace orv {

namespace {

// What lies 6 sigma outside moves a sample by less than a tenth of a grey level.
constexpr double kMarginInSigmas = 6.0;
/// The samples that a line starts from.
constexpr int kStart = 3;

int marginFor(double sigma) {
    return static_cast<int>(std::ceil(kMarginInSigmas * sigma)) + kStart;
}

/// The place of sample i of a line of n that is mirrored again and again at both ends.
int mirroredIndex(int i, int n) {
    const int inPeriod = ((i % (2 * n)) + 2 * n) % (2 * n);
    return inPeriod < n ? inPeriod : 2 * n - 1 - inPeriod;
}

/// The plane with a mirrored margin on all sides. The samples that lines start from are equal,
/// since a recursion that starts from noise carries its slope far into the picture.
std::unique_ptr<RealImage> mirrored(const FloatImage& plane, int margin) {
    auto extended =
        RealImage::uninitialised(plane.width() + 2 * margin, plane.height() + 2 * margin);
    for (int x = 0; x < extended->width(); ++x) {
        const float* const from =
            plane.row(mirroredIndex(std::max(x, kStart - 1) - margin, plane.width()));
        double* const to = extended->row(x);
        for (int y = 0; y < margin; ++y) {
            to[y] = from[mirroredIndex(std::max(y, kStart - 1) - margin, plane.height())];
        }
        std::copy_n(from, plane.height(), to + margin);
        for (int y = margin + plane.height(); y < extended->height(); ++y) {
            to[y] = from[mirroredIndex(y - margin, plane.height())];
        }
    }
    return extended;
}

}  // namespace

VanVlietBlurOperator::VanVlietBlurOperator(double sigma) : sigma_(sigma) {}

std::unique_ptr<DiscreteImage> VanVlietBlurOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    FloatRecursive2dBlurOperator blur(sigma_);
    FloatImage plane(source);
    blur.blurInPlace(plane);
    target->setChannelFromFloat(plane, 0);
    return target;
}

std::unique_ptr<DiscreteImage> VanVlietBlurOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanes(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    FloatRecursive2dBlurOperator blur(sigma_);
    return FloatPlanesOperator(&blur).apply(planes, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runOwnedPlanes(
    std::unique_ptr<FloatImage3> planes) {
    FloatRecursive2dBlurOperator blur(sigma_);
    ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    for (int c = 0; c < 3 && !workCancelled(); ++c) {
        narrowToPlane(window, width, c);
        const WorkSlice slice(c, 3);
        blur.blurInPlace(planes->plane(c));
        reportWork(1, 1);
    }
    return planes;
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanesAlt(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> VanVlietBlurOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

void VanVlietBlurOperator::setSigma(double sigma) {
    sigma_ = sigma;
}

std::unique_ptr<FloatImage> VanVlietBlurOperator::runPlane(const FloatImage& plane) {
    return FloatRecursive2dBlurOperator(sigma_).apply(plane, nullptr);
}

void VanVlietBlurOperator::blurFinely(FloatImage& plane) const {
    RealRecursive2dBlurOperator blur(sigma_);
    const int margin = marginFor(blur.sigma());
    const auto extended = mirrored(plane, margin);
    blur.blurInPlace(*extended);
    for (int x = 0; x < plane.width(); ++x) {
        const double* const column = extended->row(x + margin) + margin;
        std::transform(column, column + plane.height(), plane.row(x),
                       [](double sample) { return toFloat(sample); });
    }
}

}  // namespace orv
