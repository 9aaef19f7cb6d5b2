#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace orv {

class BandPyramid;
class RealImage;

/// Some of the coefficients of a plane: columns of equal length at equal distances.
struct CoefficientView {
    double* first;
    int width;
    int height;
    std::size_t columnStep;
    long long outside;  ///< how many more coefficients the band has, all of them +0

    /// Column x, `height` coefficients.
    double* column(int x) const { return first + static_cast<std::size_t>(x) * columnStep; }
    /// Coefficients in view.
    std::size_t count() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};

/// The bands of a transformed plane, wherever they stand: what the three rules work on.
class CoefficientBands {
  public:
    CoefficientBands() = default;
    CoefficientBands(const CoefficientBands&) = delete;
    CoefficientBands& operator=(const CoefficientBands&) = delete;
    virtual ~CoefficientBands();

    /// Sizes of the whole plane.
    virtual int width() const = 0;
    virtual int height() const = 0;
    /// Levels that the rules shrink; 0 or below means none.
    virtual int levels() const = 0;
    /// The detail band of a level, 1 being the finest.
    virtual CoefficientView band(int level, int detail) = 0;
    /// A copy of a detail band with all its coefficients.
    virtual std::unique_ptr<RealImage> wholeBand(int level, int detail) const = 0;
    /// All coefficients that no detail band of the levels holds.
    virtual std::vector<CoefficientView> rest() = 0;
    /// The noise of the plane: estimateNoise2D, unless it is known.
    virtual double noise() const = 0;
};

/// The bands of a coefficient plane as FwtImage makes it.
class PlaneBands final : public CoefficientBands {
  public:
    /// Owns:    nothing; the plane must outlive this.
    PlaneBands(RealImage& coefficients, int height, int width, int levels)
        : coefficients_(coefficients), height_(height), width_(width), levels_(levels) {}

    int width() const override { return width_; }
    int height() const override { return height_; }
    int levels() const override { return levels_; }
    CoefficientView band(int level, int detail) override;
    std::unique_ptr<RealImage> wholeBand(int level, int detail) const override;
    std::vector<CoefficientView> rest() override;
    double noise() const override;

  private:
    CoefficientView box(int xStart, int xEnd, int yStart, int yEnd) const;

    RealImage& coefficients_;
    int height_;
    int width_;
    int levels_;
};

/// The bands of a pyramid that keeps each as a plane of its own.
class PyramidBands final : public CoefficientBands {
  public:
    /// Owns:    nothing; the pyramid must outlive this.
    ///
    /// `knownNoise` is what noise() gives; below 0 the noise is measured.
    PyramidBands(BandPyramid& pyramid, int height, int width, double knownNoise = -1.0)
        : pyramid_(pyramid), height_(height), width_(width), knownNoise_(knownNoise) {}

    int width() const override { return width_; }
    int height() const override { return height_; }
    int levels() const override;
    CoefficientView band(int level, int detail) override;
    std::unique_ptr<RealImage> wholeBand(int level, int detail) const override;
    std::vector<CoefficientView> rest() override;
    double noise() const override;

  private:
    BandPyramid& pyramid_;
    int height_;
    int width_;
    double knownNoise_;
};

}  // namespace orv
