#pragma once

#include <memory>

#include "images/float_image3.h"
#include "operators/image_operator.h"

namespace orv {

/// An image operator that runs on planes of floats.
///
/// `apply` turns a picture of three channels into a `FloatImage3`, runs `runPlanes` or
/// `runPlanesAlt` on it and writes the result back; a picture of one channel goes to `runGrey`.
class FloatPlaneImageOperator : public ImageOperator {
  public:
    FloatPlaneImageOperator();

    /// As `apply`: the transform is tested and not used on float planes. Quirk: float-transform
    std::unique_ptr<DiscreteImage> applyWithTransform(
        const ColorSpaceTransform* transform, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;

    /// Runs the operator on a picture.
    ///
    /// Shapes:  source and target of one size; a null target is made as a clone of the source.
    /// Units:   the range `lower` to `upper` is taken from the source.
    /// Fails:   null when the run gives null; a `colorPath` other than 0 and 1, or a count of
    ///          channels other than 1 and 3, leaves the target as it is.
    std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target) override;

    /// As `applyMasked`; like `applyWithTransform` it doesn't use the transform.
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

    /// Three planes; by default a clone of them, or the target after `assign` of the planes,
    /// which between equal sizes changes nothing. Quirk: float-assign
    virtual std::unique_ptr<FloatImage3> runPlanes(const FloatImage3& planes,
                                                   std::unique_ptr<FloatImage3> target);

    /// `runPlanes` within a mask; by default the mask is dropped.
    virtual std::unique_ptr<FloatImage3> runPlanesMasked(const DiscreteImage& mask,
                                                         const FloatImage3& planes,
                                                         std::unique_ptr<FloatImage3> target);

    /// What `colorPath` 1 runs; the default is that of `runPlanes`.
    virtual std::unique_ptr<FloatImage3> runPlanesAlt(const FloatImage3& planes,
                                                      std::unique_ptr<FloatImage3> target);

    /// `runPlanesAlt` within a mask; by default the mask is dropped.
    virtual std::unique_ptr<FloatImage3> runPlanesAltMasked(
        const DiscreteImage& mask, const FloatImage3& planes,
        std::unique_ptr<FloatImage3> target);

    /// Sets `channelMode`, which no shared code reads.
    virtual void setChannelMode(int n);

    /// The value of `channelMode`, 1 at the start.
    int channelMode() const { return channelMode_; }
    /// 0 runs `runPlanes`, 1 `runPlanesAlt`; anything else leaves colour pictures unprocessed.
    unsigned char colorPath() const { return colorPath_; }
    /// Sets `colorPath`, 0 at the start.
    void setColorPath(unsigned char path) { colorPath_ = path; }
    /// Lower end of the value range, grey levels.
    float lower() const { return lower_; }
    /// Upper end of the value range, grey levels.
    float upper() const { return upper_; }

  protected:
    /// What `apply` runs on the planes that it has read from a picture; by default `runPlanes`.
    /// For operators that can write their result over planes which nobody needs any more.
    virtual std::unique_ptr<FloatImage3> runOwnedPlanes(std::unique_ptr<FloatImage3> planes);

  private:
    std::unique_ptr<DiscreteImage> begin(const DiscreteImage& source,
                                         std::unique_ptr<DiscreteImage> target);
    std::unique_ptr<DiscreteImage> run(const DiscreteImage* mask, const DiscreteImage& source,
                                       std::unique_ptr<DiscreteImage> target);
    std::unique_ptr<FloatImage3> runColour(const DiscreteImage* mask,
                                           std::unique_ptr<FloatImage3> planes);

    unsigned char colorPath_;
    int channelMode_;
    float lower_;
    float upper_;
};

}  // namespace orv
