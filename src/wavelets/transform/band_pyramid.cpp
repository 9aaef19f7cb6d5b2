#include "wavelets/transform/band_pyramid.h"

#include <algorithm>
#include <utility>

#include "images/real_image.h"
#include "wavelets/transform/band_memory.h"
#include "wavelets/transform/periodic_line.h"
#include "wavelets/transform/wavelet_levels.h"

namespace orv {

namespace {

constexpr int kHighLow = 0;
constexpr int kLowHigh = 1;
constexpr int kHighHigh = 2;

BandView viewOf(RealImage& band, BandRange x, BandRange y) {
    return {band.data(), static_cast<std::size_t>(band.height()), x, y};
}

ConstBandView viewOf(const RealImage& band, BandRange x, BandRange y) {
    return {band.data(), static_cast<std::size_t>(band.height()), x, y};
}

}  // namespace

bool BandPyramid::fits(int width, int height, int levels) {
    if (levels < 1 || levels > 30 || width < 1 || height < 1) {
        return false;
    }
    const int parts = 1 << levels;
    return width % parts == 0 && height % parts == 0;
}

BandPyramid::BandPyramid(const RealImage& source, int width, int height, int levels,
                         const WaveletFilter& analysisLow, const WaveletFilter& analysisHigh)
    : width_(width), height_(height), details_(static_cast<std::size_t>(levels)) {
    const FilterReach reach(analysisLow, analysisHigh);
    ConstBandView from = viewOf(source, {0, source.width()}, {0, source.height()});
    BandMemory memory;
    for (int i = 0; i < levels; ++i) {
        Level& level = details_[static_cast<std::size_t>(i)];
        level.x = analysisRange(from.xRange, width >> i, reach);
        level.y = analysisRange(from.yRange, height >> i, reach);
        for (std::unique_ptr<RealImage>& band : level.bands) {
            band = RealImage::uninitialised(level.x.size(), level.y.size());
        }
        BandMemory next;
        BandView low = {};
        if (i + 1 < levels) {
            next = BandMemory(level.x, level.y);
            low = next.view();
        } else {
            approximation_ = RealImage::uninitialised(level.x.size(), level.y.size());
            low = viewOf(*approximation_, level.x, level.y);
        }
        analyseLevel(from, width >> i, height >> i, analysisLow, analysisHigh,
                     {low, viewOf(*level.bands[kHighLow], level.x, level.y),
                      viewOf(*level.bands[kLowHigh], level.x, level.y),
                      viewOf(*level.bands[kHighHigh], level.x, level.y)});
        memory = std::move(next);
        from = low;
    }
}

BandPyramid::~BandPyramid() = default;

void BandPyramid::inverse(RealImage& target, const WaveletFilter& synthesisLow,
                          const WaveletFilter& synthesisHigh) const {
    const FilterReach reach(synthesisLow, synthesisHigh);
    // What each level has to rebuild, from the target down.
    std::vector<BandRange> xRanges = {{0, target.width()}};
    std::vector<BandRange> yRanges = {{0, target.height()}};
    for (int i = 0; i + 1 < levels(); ++i) {
        xRanges.push_back(synthesisRange(xRanges.back(), width_ >> i, reach));
        yRanges.push_back(synthesisRange(yRanges.back(), height_ >> i, reach));
    }
    const RealImage& coarsest = *approximation_;
    ConstBandView low = viewOf(coarsest, details_.back().x, details_.back().y);
    BandMemory memory;
    for (int i = levels() - 1; i >= 0; --i) {
        const auto at = static_cast<std::size_t>(i);
        const Level& level = details_[at];
        BandMemory next;
        BandView to = viewOf(target, xRanges[at], yRanges[at]);
        if (i > 0) {
            next = BandMemory(xRanges[at], yRanges[at]);
            to = next.view();
        }
        const auto detail = [&](int band) {
            return viewOf(std::as_const(*level.bands[static_cast<std::size_t>(band)]), level.x,
                          level.y);
        };
        synthesiseLevel({low, detail(kHighLow), detail(kLowHigh), detail(kHighHigh)},
                        width_ >> i, height_ >> i, synthesisLow, synthesisHigh, to);
        memory = std::move(next);
        low = to;
    }
}

RealImage& BandPyramid::band(int level, int detail) {
    return *levelAt(level).bands[static_cast<std::size_t>(detail)];
}

const RealImage& BandPyramid::band(int level, int detail) const {
    return *levelAt(level).bands[static_cast<std::size_t>(detail)];
}

std::unique_ptr<RealImage> BandPyramid::wholeBand(int level, int detail) const {
    const RealImage& kept = band(level, detail);
    const BandRange xRange = levelAt(level).x;
    const BandRange yRange = levelAt(level).y;
    auto whole = std::make_unique<RealImage>(bandWidth(level), bandHeight(level));
    for (int x = xRange.begin; x < xRange.end; ++x) {
        const double* from = kept.row(x - xRange.begin);
        double* to = whole->row(keptPosition(x, {0, 0}, bandWidth(level)));
        // Rows before the first stand at the end of the band.
        const int wrapped = std::clamp(-yRange.begin, 0, yRange.size());
        std::copy(from, from + wrapped, to + bandHeight(level) - wrapped);
        std::copy(from + wrapped, from + yRange.size(), to + std::max(yRange.begin, 0));
    }
    return whole;
}

}  // namespace orv
