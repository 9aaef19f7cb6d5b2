#pragma once

#include <memory>
#include <vector>

namespace orv {

class ColorSpaceTransform;
class DiscreteImage;

/// The `depthClass` of a picture with 16 bits a channel.
inline constexpr int kSixteenBitDepthClass = 2;

/// Root of everything that turns one picture into another.
///
/// An export makes one, runs one `apply` and lets it go; nothing is kept between calls. The
/// order of the virtual operations is part of the design. A target may be null: it is then made
/// by the operation, and the caller owns what comes back.
class ImageOperator {
  public:
    ImageOperator();
    ImageOperator(const ImageOperator&) = delete;
    ImageOperator& operator=(const ImageOperator&) = delete;

    /// Builds the region list from the interior mask pixels that equal `regionKey`, x outside
    /// and y inside; a list that stands already is replaced.
    virtual void prepareRegion(const DiscreteImage& mask);

    /// Frees both lists and sets `regionCount` to 0.
    virtual void releaseRegion();

    virtual ~ImageOperator();

    /// Bits a channel: 8, or 16 after `apply` has met a 16-bit source.
    virtual int bits() const;
    /// Sets the bits a channel.
    virtual void setBits(int n);
    /// A byte that nothing reads, 0 at the start.
    virtual unsigned char reservedFlag() const;
    /// Sets the byte that nothing reads.
    virtual void setReservedFlag(unsigned char flag);
    /// A number that the shock operator hands on to its filter, 0 at the start.
    virtual int reservedNumber() const;
    /// Sets the number that the shock operator hands on.
    virtual void setReservedNumber(int n);
    /// The value that a mask pixel must equal to join the region, 255 at the start.
    virtual int regionKey() const;
    /// Sets the value that selects the region; lists that stand already are kept.
    virtual void setRegionKey(int key);

    /// Takes over two lists made elsewhere, the first `count` entries of which are the region.
    virtual void setRegion(int count, std::vector<int> xs, std::vector<int> ys);

    /// `apply` in the colour space of a transform, which may be null; this root ignores it.
    virtual std::unique_ptr<DiscreteImage> applyWithTransform(
        const ColorSpaceTransform* transform, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target);

    /// Runs the operator on a picture.
    ///
    /// Shapes:  source and target of one size and not one picture.
    /// Fails:   null when the run fails.
    virtual std::unique_ptr<DiscreteImage> apply(const DiscreteImage& source,
                                                 std::unique_ptr<DiscreteImage> target) = 0;

    /// `applyWithTransform` within a mask; this root ignores both.
    virtual std::unique_ptr<DiscreteImage> applyMaskedWithTransform(
        const ColorSpaceTransform* transform, const DiscreteImage& mask,
        const DiscreteImage& source, std::unique_ptr<DiscreteImage> target);

    /// `apply` within a mask; this root ignores the mask.
    virtual std::unique_ptr<DiscreteImage> applyMasked(const DiscreteImage& mask,
                                                       const DiscreteImage& source,
                                                       std::unique_ptr<DiscreteImage> target);

    /// A hook that does nothing.
    virtual void hook();

    /// The number of pixels in the region.
    int regionCount() const { return regionCount_; }
    /// The x of each region pixel.
    const std::vector<int>& regionXs() const { return regionXs_; }
    /// The y of each region pixel.
    const std::vector<int>& regionYs() const { return regionYs_; }

  private:
    int bits_;
    unsigned char reservedFlag_;
    int reservedNumber_;
    int regionKey_;
    int regionCount_;
    std::vector<int> regionXs_;
    std::vector<int> regionYs_;
};

}  // namespace orv
