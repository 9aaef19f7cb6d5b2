#pragma once

#include <cstdio>
#include <memory>

namespace orv {

class DiscreteImage;
class FloatImage3;
class FloatOperator;

/// Runs a plane operator on the three planes of a colour image, one after the other.
class FloatPlanesOperator {
  public:
    /// Owns:    nothing; `wrapped` has to outlive this object.
    explicit FloatPlanesOperator(FloatOperator* wrapped);
    FloatPlanesOperator(const FloatPlanesOperator&) = delete;
    FloatPlanesOperator& operator=(const FloatPlanesOperator&) = delete;

    virtual ~FloatPlanesOperator();

    /// Target plane c = operator applied to source plane c, for c = 0, 1, 2.
    ///
    /// With d = progressHigh - progressLow on entry, plane c reports into the window from
    /// c d / 3 to (c + 1) d / 3; the window keeps its last slice.
    ///
    /// Shapes:  target of the source's size, or null: then a clone of the source is used.
    /// Fails:   never; ends early, with the planes so far, when the work is cancelled.
    /// Quirk:   progress-slice
    virtual std::unique_ptr<FloatImage3> apply(const FloatImage3& source,
                                               std::unique_ptr<FloatImage3> target);

    /// `apply` with a null target for planes that nobody needs any more: the memory of a source
    /// plane serves the result of the next one. The same results and the same window.
    std::unique_ptr<FloatImage3> applyToOwned(std::unique_ptr<FloatImage3> planes);

    /// `apply` with the masked form of the wrapped operator, without touching the window.
    virtual std::unique_ptr<FloatImage3> applyMasked(const DiscreteImage& mask,
                                                     const FloatImage3& source,
                                                     std::unique_ptr<FloatImage3> target);

    /// `apply`, `count` times; every pass starts from the source.
    ///
    /// Fails:   never; a count of 0 or less gives the target, or a clone of the source.
    /// Quirk:   float-assign
    virtual std::unique_ptr<FloatImage3> iterate(int count, const FloatImage3& source,
                                                 std::unique_ptr<FloatImage3> target);

    /// `applyMasked`, `count` times; every pass starts from the source.
    virtual std::unique_ptr<FloatImage3> iterateMasked(int count, const DiscreteImage& mask,
                                                       const FloatImage3& source,
                                                       std::unique_ptr<FloatImage3> target);

    /// Writes nothing.
    virtual void printName(std::FILE* file) const;

  private:
    FloatOperator* wrapped_;
};

}  // namespace orv
