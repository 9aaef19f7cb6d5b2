#pragma once

#include <cstdio>
#include <memory>
#include <vector>

namespace orv {

class DiscreteImage;
class RealImage;

/// Root of everything that turns one double-precision plane into another: the homomorphic
/// filter, the Retinex, the double blur, the shock operators, the wavelet denoiser.
///
/// The order of the virtual operations is part of the design; derived classes add theirs
/// behind it. A target may be null: it is then made, and the caller owns what comes back.
class RealOperator {
  public:
    RealOperator() = default;
    RealOperator(const RealOperator&) = delete;
    RealOperator& operator=(const RealOperator&) = delete;

    /// Builds the first region list from the mask pixels that equal `regionKey`.
    virtual void prepareRegion(const DiscreteImage& mask);
    /// Builds the second region list from the mask pixels that equal `regionKey2`.
    virtual void prepareRegion2(const DiscreteImage& mask);
    /// Empties the first lists.
    virtual void releaseRegion();
    /// Empties the second lists.
    virtual void releaseRegion2();

    virtual ~RealOperator();

    /// Sets the bounds of the value range; this root never reads them.
    ///
    /// Units:   grey levels.
    virtual void setRange(double lower, double upper);

    /// The plane that shock operators hand on to those they delegate to; may be null.
    virtual const RealImage* auxiliaryPlane() const;
    /// Sets the auxiliary plane, which is not owned; null clears it.
    virtual void setAuxiliaryPlane(const RealImage* plane);

    /// The mask value of the first region.
    virtual int regionKey() const;
    /// Sets the mask value of the first region.
    virtual void setRegionKey(int key);
    /// The mask value of the second region.
    virtual int regionKey2() const;
    /// Sets the mask value of the second region.
    virtual void setRegionKey2(int key);

    /// Takes over two lists made elsewhere as the first region.
    virtual void setRegion(int count, std::vector<int> xs, std::vector<int> ys);
    /// Takes over two lists made elsewhere as the second region.
    virtual void setRegion2(int count, std::vector<int> xs, std::vector<int> ys);

    /// Hook: the colour wrapper shows each source plane here before `apply`. Does nothing.
    virtual void setGuide(const RealImage& plane);

    /// Reserved hook that does nothing in every class.
    virtual void setReservedPlane(const RealImage* plane);

    /// Reserved hook that does nothing in every class.
    virtual void reservedHook();

    /// Runs the operator on one plane.
    ///
    /// Shapes:  target w x h as the source, or null; source and target must not be one plane.
    virtual std::unique_ptr<RealImage> apply(const RealImage& source,
                                             std::unique_ptr<RealImage> target) = 0;

    /// Runs the operator where the mask selects; the default drops the mask.
    virtual std::unique_ptr<RealImage> applyMasked(const DiscreteImage& mask,
                                                   const RealImage& source,
                                                   std::unique_ptr<RealImage> target);

    /// Applies the operator `count` times, each pass to the result of the one before.
    ///
    /// Fails:   never; a count of 0 or less gives the target, or a clone of the source.
    /// Cost:    count applications and copies, two planes at most.
    virtual std::unique_ptr<RealImage> iterate(int count, const RealImage& source,
                                               std::unique_ptr<RealImage> target);

    /// `iterate` with `applyMasked` in place of `apply`.
    virtual std::unique_ptr<RealImage> iterateMasked(int count, const DiscreteImage& mask,
                                                     const RealImage& source,
                                                     std::unique_ptr<RealImage> target);

    /// Writes the class text; this root has none.
    virtual void printName(std::FILE* file) const;

    /// The number of pixels in the first region list.
    int regionCount() const { return regionCount_; }
    /// The x of each pixel of the first region.
    const std::vector<int>& regionXs() const { return regionXs_; }
    /// The y of each pixel of the first region.
    const std::vector<int>& regionYs() const { return regionYs_; }
    /// The number of pixels in the second region list.
    int regionCount2() const { return regionCount2_; }
    /// The x of each pixel of the second region.
    const std::vector<int>& regionXs2() const { return regionXs2_; }
    /// The y of each pixel of the second region.
    const std::vector<int>& regionYs2() const { return regionYs2_; }

  protected:
    double lower_ = 0.0;
    double upper_ = 255.0;
    int regionKey_ = 1;
    int regionCount_ = 0;
    std::vector<int> regionXs_;
    std::vector<int> regionYs_;
    int regionKey2_ = 1;
    int regionCount2_ = 0;
    std::vector<int> regionXs2_;
    std::vector<int> regionYs2_;
    const RealImage* auxiliaryPlane_ = nullptr;
};

}  // namespace orv
