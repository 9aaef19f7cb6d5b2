#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "images/real_image.h"
#include "wavelets/transform/band_memory.h"
#include "wavelets/transform/band_pyramid.h"
#include "wavelets/transform/wavelet_levels.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {

namespace {

using LineTransform = void (*)(const double*, double*, int, int, const WaveletFilter&,
                               const WaveletFilter&);

/// Runs one level of a line transform in place along x or along y of a plane's corner.
class LinePasses {
  public:
    LinePasses(RealImage& plane, int height, int width, LineTransform transform,
               const WaveletFilter& low, const WaveletFilter& high)
        : plane_(plane),
          transform_(transform),
          low_(low),
          high_(high),
          lineX_(line(width)),
          resultX_(line(width)),
          lineY_(line(height)),
          resultY_(line(height)) {}

    void alongX(int width, int height) const {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                lineX_[at(x)] = plane_.row(x)[y];
            }
            transform_(lineX_.get(), resultX_.get(), width, 1, low_, high_);
            for (int x = 0; x < width; ++x) {
                plane_.row(x)[y] = resultX_[at(x)];
            }
        }
    }

    void alongY(int width, int height) const {
        const std::size_t bytes = at(height) * sizeof(double);
        for (int x = 0; x < width; ++x) {
            std::memcpy(lineY_.get(), plane_.row(x), bytes);
            transform_(lineY_.get(), resultY_.get(), height, 1, low_, high_);
            std::memcpy(plane_.row(x), resultY_.get(), bytes);
        }
    }

  private:
    static std::size_t at(int i) { return static_cast<std::size_t>(i); }
    static std::unique_ptr<double[]> line(int length) {
        return std::make_unique<double[]>(at(std::max(length, 1)));
    }

    RealImage& plane_;
    LineTransform transform_;
    const WaveletFilter& low_;
    const WaveletFilter& high_;
    std::unique_ptr<double[]> lineX_;
    std::unique_ptr<double[]> resultX_;
    std::unique_ptr<double[]> lineY_;
    std::unique_ptr<double[]> resultY_;
};

/// The corner of a coefficient plane from which or into which a level's low band goes, and the
/// three bands beside it.
template <class View, class Plane>
LevelBands<View> bandsOf(Plane& plane, int width, int height) {
    const BandRange x = {0, width / 2};
    const BandRange y = {0, height / 2};
    const auto stride = static_cast<std::size_t>(plane.height());
    const auto band = [&](int column, int row) {
        return View{plane.row(column) + row, stride, x, y};
    };
    return {band(0, 0), band(width / 2, 0), band(0, height / 2), band(width / 2, height / 2)};
}

void fwtImageByLevel(const RealImage& source, RealImage& coefficients, int height, int width,
                     int levels, const WaveletFilter& low, const WaveletFilter& high) {
    ConstBandView from(source.data(), static_cast<std::size_t>(source.height()), {0, width},
                       {0, height});
    BandMemory memory;
    for (int pass = 0; pass < levels; ++pass) {
        LevelBands<BandView> bands = bandsOf<BandView>(coefficients, width, height);
        BandMemory next;
        if (pass + 1 < levels) {
            next = BandMemory({0, width / 2}, {0, height / 2});
            bands.lowLow = next.view();
        }
        analyseLevel(from, width, height, low, high, bands);
        memory = std::move(next);
        from = bands.lowLow;
        width /= 2;
        height /= 2;
    }
}

void iwtImageByLevel(const RealImage& coefficients, RealImage& target, int height, int width,
                     int levels, const WaveletFilter& low, const WaveletFilter& high) {
    BandMemory memory;
    for (int pass = levels - 1; pass >= 0; --pass) {
        const int w = width >> pass;
        const int h = height >> pass;
        LevelBands<ConstBandView> bands = bandsOf<ConstBandView>(coefficients, w, h);
        if (pass + 1 < levels) {
            bands.lowLow = memory.view();
        }
        BandMemory next;
        BandView to = {
            target.data(), static_cast<std::size_t>(target.height()), {0, w}, {0, h}};
        if (pass > 0) {
            next = BandMemory({0, w}, {0, h});
            to = next.view();
        }
        synthesiseLevel(bands, w, h, low, high, to);
        memory = std::move(next);
    }
}

}  // namespace

void FwtImage(const RealImage& source, RealImage& coefficients, int height, int width,
              int levels, const WaveletFilter& low, const WaveletFilter& high) {
    if (BandPyramid::fits(width, height, levels)) {
        fwtImageByLevel(source, coefficients, height, width, levels, low, high);
        return;
    }
    coefficients.assign(source);
    const LinePasses passes(coefficients, height, width, FwtVector, low, high);
    for (int pass = 0; pass < levels; ++pass) {
        passes.alongX(width, height);
        passes.alongY(width, height);
        width /= 2;
        height /= 2;
    }
}

void IwtImage(const RealImage& coefficients, RealImage& target, int height, int width,
              int levels, const WaveletFilter& low, const WaveletFilter& high) {
    if (BandPyramid::fits(width, height, levels)) {
        iwtImageByLevel(coefficients, target, height, width, levels, low, high);
        return;
    }
    target.assign(coefficients);
    const int parts = power2(levels - 1);
    if (parts < 1) {
        return;
    }
    const LinePasses passes(target, height, width, IwtVector, low, high);
    width /= parts;
    height /= parts;
    for (int pass = 0; pass < levels; ++pass) {
        passes.alongY(width, height);
        passes.alongX(width, height);
        width *= 2;
        height *= 2;
    }
}

}  // namespace orv
