#pragma once

#include <cstdio>
#include <memory>

namespace orv {

class DiscreteImage;
class RealImage3;
class RealOperator;

/// Runs a plane operator on the three planes of a colour image, one after the other.
class RealPlanesOperator {
  public:
    /// Owns:    nothing; `wrapped` has to outlive this object.
    explicit RealPlanesOperator(RealOperator* wrapped);
    RealPlanesOperator(const RealPlanesOperator&) = delete;
    RealPlanesOperator& operator=(const RealPlanesOperator&) = delete;

    virtual ~RealPlanesOperator();

    /// Target plane c = operator applied to source plane c, for c = 0, 1, 2.
    ///
    /// With d = progressHigh - progressLow on entry, plane c reports into the window from
    /// c d / 3 to (c + 1) d / 3; the window keeps its last slice.
    ///
    /// Shapes:  target of the source's size, or null: then a clone of the source is used.
    /// Fails:   never; ends early, with the planes so far, when the work is cancelled.
    /// Quirk:   progress-slice
    virtual std::unique_ptr<RealImage3> apply(const RealImage3& source,
                                              std::unique_ptr<RealImage3> target);

    /// `apply` with a null target for planes that nobody needs any more: the memory of a source
    /// plane serves the result of the next one. The same window, and the same results from an
    /// operator that writes every sample of its target.
    std::unique_ptr<RealImage3> applyToOwned(std::unique_ptr<RealImage3> planes);

    /// `apply` with the masked form of the wrapped operator, without touching the window.
    virtual std::unique_ptr<RealImage3> applyMasked(const DiscreteImage& mask,
                                                    const RealImage3& source,
                                                    std::unique_ptr<RealImage3> target);

    /// `apply`, `count` times; each pass works on the result of the one before.
    ///
    /// Fails:   never; a count of 0 or less gives the target, or a clone of the source.
    virtual std::unique_ptr<RealImage3> iterate(int count, const RealImage3& source,
                                                std::unique_ptr<RealImage3> target);

    /// `applyMasked`, `count` times; each pass works on the result of the one before.
    virtual std::unique_ptr<RealImage3> iterateMasked(int count, const DiscreteImage& mask,
                                                      const RealImage3& source,
                                                      std::unique_ptr<RealImage3> target);

    /// Writes nothing.
    virtual void printName(std::FILE* file) const;

  private:
    RealOperator* wrapped_;
};

}  // namespace orv
