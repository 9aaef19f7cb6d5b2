#pragma once

#include <memory>

#include "images/real_image3.h"
#include "operators/image_operator.h"

namespace orv {

/// An image operator that runs on planes of doubles.
///
/// The twin of `FloatPlaneImageOperator`. It neither reads the source's value range nor raises
/// `bits`, and it does enter a colour space when a transform is given.
class RealPlaneImageOperator : public ImageOperator {
  public:
    RealPlaneImageOperator();

    /// Runs the operator in the colour space of a transform.
    ///
    ///     work = forward(planes)   result = run(work)   target = inverse(result)
    ///
    /// Shapes:  source and target of one size; a null target is made as a clone of the source.
    /// Fails:   null when the run or the transform gives null; a `colorPath` other than 0 and
    ///          1, or a count of channels other than 1 and 3, leaves the target as it is. With
    ///          a null transform it is `apply`; one channel goes to `runGrey`.
    std::unique_ptr<DiscreteImage> applyWithTransform(
        const ColorSpaceTransform* transform, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;

    /// Runs the operator on a picture; shapes and failures as in `applyWithTransform`.
    std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target) override;

    /// `applyWithTransform` with the masked forms of the run operations.
    std::unique_ptr<DiscreteImage> applyMaskedWithTransform(
        const ColorSpaceTransform* transform, const DiscreteImage& mask,
        const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) override;

    /// `apply` with the masked forms of the run operations.
    std::unique_ptr<DiscreteImage> applyMasked(const DiscreteImage& mask,
                                               const DiscreteImage& source,
                                               std::unique_ptr<DiscreteImage> target) override;

    /// One channel; by default the target, or a clone of the source when it is null.
    virtual std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                                   std::unique_ptr<DiscreteImage> target);

    /// `runGrey` within a mask; by default the mask is dropped.
    virtual std::unique_ptr<DiscreteImage> runGreyMasked(const DiscreteImage& mask,
                                                         const DiscreteImage& source,
                                                         std::unique_ptr<DiscreteImage> target);

    /// Three planes; by default a copy of them, in the target when there is one.
    virtual std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                                  std::unique_ptr<RealImage3> target);

    /// `runPlanes` within a mask; by default the mask is dropped.
    virtual std::unique_ptr<RealImage3> runPlanesMasked(const DiscreteImage& mask,
                                                        const RealImage3& planes,
                                                        std::unique_ptr<RealImage3> target);

    /// What `colorPath` 1 runs; the default is that of `runPlanes`.
    virtual std::unique_ptr<RealImage3> runPlanesAlt(const RealImage3& planes,
                                                     std::unique_ptr<RealImage3> target);

    /// `runPlanesAlt` within a mask; by default the mask is dropped.
    virtual std::unique_ptr<RealImage3> runPlanesAltMasked(const DiscreteImage& mask,
                                                           const RealImage3& planes,
                                                           std::unique_ptr<RealImage3> target);

    /// Sets `channelMode`, which no shared code reads.
    virtual void setChannelMode(int n);

    /// The value of `channelMode`, 1 at the start.
    int channelMode() const { return channelMode_; }
    /// 0 runs `runPlanes`, 1 `runPlanesAlt`; anything else leaves colour pictures unprocessed.
    unsigned char colorPath() const { return colorPath_; }
    /// Sets `colorPath`, 0 at the start.
    void setColorPath(unsigned char path) { colorPath_ = path; }

  protected:
    /// What `apply` runs on the planes that it has read from a picture; by default `runPlanes`.
    /// For operators that can write their result over planes which nobody needs any more.
    virtual std::unique_ptr<RealImage3> runOwnedPlanes(std::unique_ptr<RealImage3> planes);

  private:
    std::unique_ptr<DiscreteImage> run(const ColorSpaceTransform* transform,
                                       const DiscreteImage* mask, const DiscreteImage& source,
                                       std::unique_ptr<DiscreteImage> target);
    std::unique_ptr<RealImage3> runRead(const DiscreteImage* mask,
                                        std::unique_ptr<RealImage3> planes);
    std::unique_ptr<RealImage3> runColour(const DiscreteImage* mask, const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target);
    std::unique_ptr<RealImage3> runTransformed(const ColorSpaceTransform& transform,
                                               const DiscreteImage* mask,
                                               std::unique_ptr<RealImage3> planes);

    unsigned char colorPath_;
    int channelMode_;
};

}  // namespace orv
