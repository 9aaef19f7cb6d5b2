#pragma once

#include <cstddef>
#include <memory>

#include "base/aligned_block.h"
#include "images/discrete_image.h"

namespace orv {

/// The one concrete image: three interleaved bytes a pixel, rows without padding.
///
/// Byte 0 of a pixel is the channel named red, byte 1 green, byte 2 blue, whatever order the
/// host gave them in.
///
/// Shapes:  width x height pixels in one block; sizes below zero count as zero.
/// Owns:    `rawPixels`, the block of 3 x height x width + 32 bytes, and `rows`; `pixels` is
///          the first 32-byte boundary in the block.
/// Fails:   memory that can't be had throws std::bad_alloc, which the exports turn into null.
class RgbDiscreteImage final : public DiscreteImage {
  public:
    /// Key of the constructor that leaves the samples as the memory holds them.
    class Uninitialised {
        explicit Uninitialised() = default;
        friend class RgbDiscreteImage;
    };

    /// All pixels zero.
    RgbDiscreteImage(int width, int height);
    /// Copies 3 x width x height bytes.
    RgbDiscreteImage(int width, int height, const unsigned char* bytes);
    /// Pixels that hold anything, for code of this class that writes all of them.
    RgbDiscreteImage(Uninitialised key, int width, int height);

    std::unique_ptr<DiscreteImage> clone() const override;
    std::unique_ptr<DiscreteImage> decimated(int n) const override;
    std::unique_ptr<DiscreteImage> interleavedZoom(int n, int r, int g, int b) const override;
    std::unique_ptr<DiscreteImage> replicatedZoom(int n) const override;
    std::unique_ptr<DiscreteImage> doubled() const override;
    std::unique_ptr<DiscreteImage> mirroredX() const override;
    std::unique_ptr<DiscreteImage> mirroredY() const override;
    std::unique_ptr<DiscreteImage> rotatedCcw() const override;
    std::unique_ptr<DiscreteImage> rotatedCw() const override;
    std::unique_ptr<DiscreteImage> rotated180() const override;

    /// Entries of a table of at most 256 bytes after a walk over the pixels, x outside; -1 when
    /// the table is full before a pixel.
    ///
    /// The table keeps the low byte of a colour while the comparison uses all 24 bits, so a
    /// colour with some red or green enters it again at each pixel.
    ///
    /// Quirk:   colour-count
    int colorCount() const override;

    void setPacked(int x, int y, int colour) override;
    void copyFrom(const DiscreteImage& image) override;
    void setFromFloat3(const FloatImage3& planes) override;
    void setChannelFromFloat(const FloatImage& plane, int channel) override;
    void setFromReal3(const RealImage3& planes) override;
    void setChannelFromReal(const RealImage& plane, int channel) override;
    void setChannelFromComplex(const ComplexPlane& plane, int part, int channel) override;
    void copyChannel(const DiscreteImage& image, int channel) override;
    void copyMasked(const DiscreteImage& image, const DiscreteImage* mask) override;
    void fill(int v) override;

    std::unique_ptr<DiscreteImage> subImage(int x, int y, int w, int h) const override;
    std::unique_ptr<DiscreteImage> subImageCorners(int x0, int y0, int x1,
                                                   int y1) const override;
    std::unique_ptr<DiscreteImage> thumbnail(int n) const override;
    std::unique_ptr<DiscreteImage> resized(double fx, double fy) const override;

    unsigned char* data() override;

    void setRed(int x, int y, int v) override;
    void setGreen(int x, int y, int v) override;
    void setBlue(int x, int y, int v) override;
    void setValue(int x, int y, int v) override;
    void setRgb(int x, int y, int r, int g, int b) override;

    int red(int x, int y) const override;
    int green(int x, int y) const override;
    int blue(int x, int y) const override;
    /// (587 byte 1 + 299 byte 0 + 114 byte 2) / 1000 in integers.
    int value(int x, int y) const override;
    int grey(int x, int y) const override;

    /// As the base, with "RGB " in front.
    void printTo(std::FILE* file) const override;
    void print() const override;

    /// Runs a curvature flow on the three channels and writes them back, truncated toward zero.
    ///
    /// | method | flow |
    /// |---|---|
    /// | 0 | full colour Beltrami, the channels coupled |
    /// | 1, 2 | mean curvature, plain and geodesic |
    /// | 3 and any other, 4 | Beltrami, plain and geodesic |
    /// | 5, 6 | Perona/Malik, plain and geodesic |
    ///
    /// The geodesic term has the weight 0.2 coeff. Text on the standard output tells the flow
    /// and its iterations; it is the whole of the reporting.
    ///
    /// Cost:    three planes of doubles.
    /// Quirk:   curvature-first-iteration
    void restoreFullColor(int method, int iterations, double coeff) override;
    /// The same by `kind`: 1 runs `method` channel by channel, where 0 counts as any other
    /// number; 2 runs the full colour Beltrami whatever `method` says; else no flow runs.
    ///
    /// | space | what the planes are |
    /// |---|---|
    /// | 0 | square roots of the channels, squared and limited to 255 at the end |
    /// | 1 | the channels |
    /// | 2 | the channels; the result is read as lightness, hue and saturation |
    /// | 3 | the channels; the result is read as luma and two chroma planes |
    /// | other | the channels; nothing is written back |
    ///
    /// `spare` is not read.
    ///
    /// Quirk:   curvature-colour-spaces
    void restoreSeparateColor(int space, int kind, int method, int iterations, double coeff,
                              double spare) override;

    const unsigned char* packedRgb() const override;

  private:
    /// A new image whose pixel (x, y) is the one at source(x, y).
    template <class Source>
    std::unique_ptr<DiscreteImage> gathered(int width, int height, Source source) const;
    /// Writes sample(x, y) to every pixel's channel 1 (or lower), 2 or 3; else nothing.
    template <class Sample>
    void writeChannel(int channel, Sample sample);

    std::size_t rowBytes() const;
    std::size_t byteCount() const;
    unsigned char* pixel(int x, int y) const {
        return rows_[y] + std::size_t{3} * static_cast<std::size_t>(x);
    }

    AlignedBlock rawPixels_;
    unsigned char* pixels_ = nullptr;
    std::unique_ptr<unsigned char*[]> rows_;
};

}  // namespace orv
