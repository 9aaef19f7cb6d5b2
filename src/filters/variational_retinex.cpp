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

constexpr std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

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

void expandAll(const RealImage& coarse, const RealImage& level, RealImage& target) {
    const RetinexKernels& kernels = retinexKernels();
    double before = 0.0;
    for (int x = 0; x < level.width(); ++x) {
        expandTo(coarse, level, x, before, target.row(x), kernels);
        before = target.row(x)[level.height() - 1];
    }
}

/// The sample that is done before column x of the expanded plane, for columns that keep it; they
/// are the last one or two.
double sampleBefore(const RealImage& coarse, const RealImage& level, int x,
                    std::vector<double>& column, const RetinexKernels& kernels) {
    if (coarseColumns(coarse, x).left != nullptr) {
        return 0.0;
    }
    const double before = sampleBefore(coarse, level, x - 1, column, kernels);
    expandTo(coarse, level, x - 1, before, column.data(), kernels);
    return column.back();
}

/// The samples of a column as the method sees them: its own, or scaled into `buffer`.
const double* scaledColumn(const double* samples, const SampleScaling& scaling,
                           std::vector<double>& buffer, const RetinexKernels& kernels) {
    if (scaling.offset == 0.0 && scaling.scale == 1.0) {
        return samples;
    }
    kernels.rescale(samples, scaling.offset, scaling.scale, buffer.data(), buffer.size());
    return buffer.data();
}

void takeLogarithm(const RealImage& source, const SampleScaling& scaling, RealImage& target) {
    const RetinexKernels& kernels = retinexKernels();
    const ElementaryKernels& elementary = elementaryKernels();
    const std::size_t count = source.sampleCount();
    for (std::size_t at = 0; at < count; at += kRun) {
        const std::size_t n = std::min(kRun, count - at);
        double* const samples = target.data() + at;
        kernels.rescale(source.data() + at, scaling.offset, scaling.scale, samples, n);
        elementary.log(samples, samples, n);
    }
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
    prepare(source);
    takeLogarithm(source, scaling, *target);
    account.logarithm(source.sampleCount());

    // The logarithm is level 0, and the result takes its place.
    pyramid_ = builder_->buildFrom(std::move(target), std::move(pyramid_));
    descend(account);
    target = pyramid_->takeLevel(0);
    divideByIllumination(source, scaling, *target, account);
    return target;
}

void VariationalRetinex::prepare(const RealImage& source) {
    if (builder_->fits(pyramid_.get(), source.width(), source.height())) {
        return;
    }
    pyramid_ = nullptr;
    light_.clear();
    light_.push_back(nullptr);
    int width = source.width();
    int height = source.height();
    for (int k = 1; k < levels_; ++k) {
        width /= 2;
        height /= 2;
        light_.push_back(RealImage::uninitialised(width, height));
    }
    if (levels_ > 1) {
        direction_ = RealImage::uninitialised(source.width() / 2, source.height() / 2);
    }
}

void VariationalRetinex::descend(WorkAccount& account) {
    const RealImage& coarsest = *pyramid_->level(levels_ - 1);
    brightest_ = retinexKernels().largest(coarsest.data(), coarsest.sampleCount());
    if (levels_ > 1) {
        light_.back()->fill(brightest_);
    }
    for (int k = levels_ - 1; k > 0 && !workCancelled(); --k) {
        improve(k, account);
        if (k > 1) {
            expandAll(*light_[sizeOf(k)], *pyramid_->level(k - 1), *light_[sizeOf(k - 1)]);
        }
    }
}

void VariationalRetinex::improve(int k, WorkAccount& account) {
    const RetinexKernels& kernels = retinexKernels();
    const RealImage& s = *pyramid_->level(k);
    RealImage& l = *light_[sizeOf(k)];
    double* const g = direction_->data();
    const RetinexLevel level = {l.width(), l.height(), s.data(), l.data(), g, alpha_, beta_};
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
    kernels.step(l.data(), g, s.data(), mu, l.sampleCount());
}

/// Level 0 gets no passes, so its estimate is expanded column by column where it is used.
///
/// `target` comes as level 0 and goes as the result. A column of the estimate needs level 0 at
/// half its x, so that from the last column to the first nothing is lost that is yet needed.
void VariationalRetinex::divideByIllumination(const RealImage& source,
                                              const SampleScaling& scaling, RealImage& target,
                                              WorkAccount& account) const {
    const RetinexKernels& kernels = retinexKernels();
    const ElementaryKernels& elementary = elementaryKernels();
    const double exponent = 1.0 - 1.0 / gamma_;
    const std::size_t height = sizeOf(source.height());
    std::vector<double> buffer(height);
    std::vector<double> column(height);
    double* const light = column.data();
    for (int x = source.width() - 1; x >= 0; --x) {
        if (levels_ == 1) {
            std::fill_n(light, height, brightest_);
        } else {
            const RealImage& coarse = *light_[1];
            const double before = sampleBefore(coarse, target, x, column, kernels);
            expandTo(coarse, target, x, before, light, kernels);
        }
        elementary.exp(light, light, height);
        elementary.pow(light, exponent, light, height);
        const double* const samples = scaledColumn(source.row(x), scaling, buffer, kernels);
        kernels.divideInto(samples, light, scaling.factor, target.row(x), height);
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
