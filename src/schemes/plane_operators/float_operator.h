#pragma once

#include <cstdio>
#include <memory>
#include <vector>

namespace orv {

class DiscreteImage;
class FloatImage;

/// Root of everything that turns one single-precision plane into another: the diffusion
/// schemes, the gradient norms, the float blurs.
///
/// The order of the virtual operations is part of the design. A target may be null: it is then
/// made by the operation, and the caller owns what comes back.
class FloatOperator {
  public:
    FloatOperator() = default;
    FloatOperator(const FloatOperator&) = delete;
    FloatOperator& operator=(const FloatOperator&) = delete;

    /// Builds the region list from the mask pixels that equal `regionKey`.
    ///
    /// Quirk:   float-region-length
    virtual void prepareRegion(const DiscreteImage& mask);

    /// Empties both lists.
    virtual void releaseRegion();

    virtual ~FloatOperator();

    /// Sets the bounds of the value range; the roots never read them.
    ///
    /// Units:   grey levels.
    virtual void setRange(float lower, float upper);

    /// The mask value that selects the region.
    virtual int regionKey() const;

    /// Sets the mask value that selects the region; lists that stand already are kept.
    virtual void setRegionKey(int key);

    /// Takes over two lists made elsewhere, the first `count` entries of which are the region.
    virtual void setRegion(int count, std::vector<int> xs, std::vector<int> ys);

    /// Hook: the colour wrapper shows each source plane here before `apply`. Does nothing.
    virtual void setGuide(const FloatImage& plane);

    /// Reserved hook that does nothing in every class.
    virtual void setReservedPlane(const FloatImage* plane);

    /// Reserved hook that does nothing in every class.
    virtual void reservedHook();

    /// Runs the operator on one plane.
    ///
    /// Shapes:  target w x h as the source, or null; source and target must not be one plane.
    virtual std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                              std::unique_ptr<FloatImage> target) = 0;

    /// Runs the operator where the mask selects; the default drops the mask.
    virtual std::unique_ptr<FloatImage> applyMasked(const DiscreteImage& mask,
                                                    const FloatImage& source,
                                                    std::unique_ptr<FloatImage> target);

    /// Applies the operator `count` times to a copy of the source.
    ///
    /// The step from one pass to the next is `FloatImage::assign`, which is empty, so that
    /// every pass starts from the source and count passes leave what one pass leaves.
    ///
    /// Fails:   never; a count of 0 or less gives the target, or a clone of the source.
    /// Cost:    count applications, one or two copies of the plane.
    /// Quirk:   float-assign
    virtual std::unique_ptr<FloatImage> iterate(int count, const FloatImage& source,
                                                std::unique_ptr<FloatImage> target);

    /// `iterate` with `applyMasked` in place of `apply`.
    virtual std::unique_ptr<FloatImage> iterateMasked(int count, const DiscreteImage& mask,
                                                      const FloatImage& source,
                                                      std::unique_ptr<FloatImage> target);

    /// Writes the class text; this root has none.
    virtual void printName(std::FILE* file) const;

    /// The number of pixels in the region list.
    int regionCount() const { return regionCount_; }
    /// The x of each region pixel; entries behind `regionCount` mean nothing.
    const std::vector<int>& regionXs() const { return regionXs_; }
    /// The y of each region pixel.
    const std::vector<int>& regionYs() const { return regionYs_; }

    /// Whether `apply` drops what a target holds, so that a null one serves as well.
    bool dropsTarget() const { return dropsTarget_; }

  protected:
    float lower_ = 0.0F;
    float upper_ = 255.0F;
    int regionKey_ = 1;
    int regionCount_ = 0;
    std::vector<int> regionXs_;
    std::vector<int> regionYs_;
    bool dropsTarget_ = false;
};

}  // namespace orv
