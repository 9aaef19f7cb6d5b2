#include "filters/variational_retinex.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "base/kernels/elementary_kernels.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "filters/kernels/retinex_kernels.h"
#include "filters/pyramid_builder.h"
#include "images/real_image.h"
#include "images/real_image_pyramid.h"

namespace orv {

namespace {

constexpr double kLongestStep = 0.2;
constexpr int kPassesPerLevel = 4;
/// Samples of a run: as many as stay in the first cache beside their results.
constexpr std::size_t kRun = 1024;

/// The coarse columns between which column x of the finer plane lies; null for one that is
/// missing.
struct CoarseColumns {
    const double* left;
    const double* right;
};

CoarseColumns coarseColumns(const RealImage& coarse, int x) {
    const int a = x / 2;
    if (a >= coarse.width()) {
        return {nullptr, nullptr};
    }
    if (x % 2 == 0) {
        return {coarse.row(a), nullptr};
    }
    if (a == coarse.width() - 1) {
        return {nullptr, nullptr};
    }
    return {coarse.row(a), coarse.row(a + 1)};
}

/// Column x of the plane that `coarse` expands to, over the samples of `level`.
void expandTo(const RealImage& coarse, const RealImage& level, int x, double before,
              double* target, const RetinexKernels& kernels) {
    const CoarseColumns columns = coarseColumns(coarse, x);
    // The finer level is read at the coarse coordinates.
    // quirk: retinex-projection
    kernels.expandColumn(columns.left, columns.right, coarse.height(), level.row(x / 2), before,
                         target, level.height());
}

std::unique_ptr<RealImage> expanded(const RealImage& coarse, const RealImage& level) {
    const RetinexKernels& kernels = retinexKernels();
    auto finer = RealImage::uninitialised(level.width(), level.height());
    double before = 0.0;
    for (int x = 0; x < level.width(); ++x) {
        expandTo(coarse, level, x, before, finer->row(x), kernels);
        before = finer->row(x)[level.height() - 1];
    }
    return finer;
}

/// The samples of a column as the method sees them: its own, or scaled into `buffer`.
const double* scaledColumn(const double* samples, const SampleScaling& scaling,
                           std::vector<double>& buffer, const RetinexKernels& kernels) {
    if (scaling.offset == 0.0 && scaling.divisor == 1.0) {
        return samples;
    }
    kernels.rescale(samples, scaling.offset, scaling.divisor, buffer.data(), buffer.size());
    return buffer.data();
}

}  // namespace

/// The share of the work that is done, by its cost in passes over samples.
class VariationalRetinex::WorkAccount {
  public:
    WorkAccount(const RealImage& plane, int levels) {
        total_ = kLogarithm + kFinish;
        double samples = 1.0;
        for (int k = 1; k < levels; ++k) {
            samples *= 0.25;
            total_ += samples * kPass * kPassesPerLevel * k;
        }
        perSample_ = 1.0 / static_cast<double>(std::max<std::size_t>(plane.sampleCount(), 1));
    }

    /// False when the work is to stop.
    bool logarithm(std::size_t samples) { return add(kLogarithm, samples); }
    bool pass(std::size_t samples) { return add(kPass, samples); }
    bool finish(std::size_t samples) { return add(kFinish, samples); }

  private:
    static constexpr double kLogarithm = 3.0;
    static constexpr double kPass = 1.0;
    static constexpr double kFinish = 8.0;

    bool add(double cost, std::size_t samples) {
        constexpr int kUnits = 1000;
        done_ += cost * static_cast<double>(samples) * perSample_;
        const int units = std::min(static_cast<int>(done_ / total_ * kUnits), kUnits);
        if (units == reported_) {
            return !workCancelled();
        }
        reported_ = units;
        return reportWork(units, kUnits);
    }

    double total_;
    double perSample_;
    double done_ = 0.0;
    int reported_ = 0;
};

VariationalRetinex::VariationalRetinex(double gamma, double alpha, double beta, int levels)
    : gamma_(gamma),
      alpha_(alpha),
      beta_(beta),
      levels_(levels),
      builder_(std::make_unique<PyramidBuilder>(levels)) {}

VariationalRetinex::~VariationalRetinex() = default;

std::unique_ptr<RealImage> VariationalRetinex::apply(const RealImage& source,
                                                     std::unique_ptr<RealImage> target) {
    return applyScaled(source, SampleScaling(), std::move(target));
}

std::unique_ptr<RealImage> VariationalRetinex::applyScaled(const RealImage& source,
                                                           const SampleScaling& scaling,
                                                           std::unique_ptr<RealImage> target) {
    if (levels_ < 1 || levels_ > mostLevels(source.width(), source.height())) {
        return nullptr;
    }
    if (target == nullptr) {
        target = RealImage::uninitialised(source.width(), source.height());
        target->setFlag(source.flag());
    }
    WorkAccount account(source, levels_);
    std::unique_ptr<RealImage> logarithm = logarithmOf(source, scaling, account);
    pyramid_ = builder_->buildFrom(std::move(logarithm), std::move(pyramid_));

    const std::unique_ptr<RealImage> l = descend(account);
    divideByIllumination(source, scaling, *l, *target, account);
    return target;
}

std::unique_ptr<RealImage> VariationalRetinex::logarithmOf(const RealImage& source,
                                                           const SampleScaling& scaling,
                                                           WorkAccount& account) {
    const RetinexKernels& kernels = retinexKernels();
    const ElementaryKernels& elementary = elementaryKernels();
    // Level 0 of the plane before is done with.
    auto plane = builder_->fits(pyramid_.get(), source.width(), source.height())
                     ? pyramid_->takeLevel(0)
                     : RealImage::uninitialised(source.width(), source.height());
    const std::size_t count = source.sampleCount();
    for (std::size_t at = 0; at < count; at += kRun) {
        const std::size_t n = std::min(kRun, count - at);
        double* const samples = plane->data() + at;
        kernels.rescale(source.data() + at, scaling.offset, scaling.divisor, samples, n);
        elementary.log(samples, samples, n);
        account.logarithm(n);
    }
    return plane;
}

/// The estimate at level 1, or at level 0 where that is the only one.
///
/// Level 0 gets no passes, so it is expanded column by column where it is used.
std::unique_ptr<RealImage> VariationalRetinex::descend(WorkAccount& account) const {
    const RealImage& coarsest = *pyramid_->level(levels_ - 1);
    auto l = RealImage::uninitialised(coarsest.width(), coarsest.height());
    l->fill(retinexKernels().largest(coarsest.data(), coarsest.sampleCount()));
    for (int k = levels_ - 1; k > 0; --k) {
        improve(*l, k, account);
        if (k > 1) {
            l = expanded(*l, *pyramid_->level(k - 1));
        }
    }
    return l;
}

void VariationalRetinex::improve(RealImage& l, int k, WorkAccount& account) const {
    const RetinexKernels& kernels = retinexKernels();
    const RealImage& s = *pyramid_->level(k);
    const auto g = RealImage::uninitialised(l.width(), l.height());
    const RetinexLevel level = {l.width(), l.height(), s.data(), l.data(),
                                g->data(), alpha_,     beta_};
    const double count = static_cast<double>(l.sampleCount());
    double mu = 0.0;
    for (int pass = 0; pass < kPassesPerLevel * k; ++pass) {
        const RetinexSums sums = kernels.sweep(level, mu, /*stepFirst=*/pass > 0);
        const double mA = sums.gg / count;
        const double mB = -sums.gb / count;
        mu = std::fabs(mA / (alpha_ * mA + (beta_ + 1.0) * mB));
        mu = mu > kLongestStep ? kLongestStep : mu;
        if (!account.pass(l.sampleCount())) {
            return;
        }
    }
    kernels.step(l.data(), g->data(), s.data(), mu, l.sampleCount());
}

void VariationalRetinex::divideByIllumination(const RealImage& source,
                                              const SampleScaling& scaling, const RealImage& l,
                                              RealImage& target, WorkAccount& account) const {
    const RetinexKernels& kernels = retinexKernels();
    const ElementaryKernels& elementary = elementaryKernels();
    const double exponent = 1.0 - 1.0 / gamma_;
    const std::size_t height = static_cast<std::size_t>(source.height());
    std::vector<double> buffer(height);
    std::vector<double> illumination(height);
    double before = 0.0;
    for (int x = 0; x < source.width(); ++x) {
        if (levels_ == 1) {
            std::copy_n(l.row(x), height, illumination.data());
        } else {
            expandTo(l, *pyramid_->level(0), x, before, illumination.data(), kernels);
            before = illumination.back();
        }
        elementary.exp(illumination.data(), illumination.data(), height);
        elementary.pow(illumination.data(), exponent, illumination.data(), height);
        const double* const samples = scaledColumn(source.row(x), scaling, buffer, kernels);
        kernels.divideInto(samples, illumination.data(), scaling.factor, target.row(x), height);
        if (!account.finish(height)) {
            return;
        }
    }
}

void VariationalRetinex::printName(std::FILE* file) const {
    printTextTo(file, "Real Variational Retinex\n");
}

int VariationalRetinex::mostLevels(int width, int height) {
    int levels = 0;
    for (int side = std::min(width, height); side > 0; side /= 2) {
        ++levels;
    }
    return levels;
}

}  // namespace orv
