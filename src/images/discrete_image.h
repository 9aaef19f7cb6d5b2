#pragma once

#include <cstdio>
#include <memory>

#include "images/complex_plane.h"

namespace orv {

class FloatImage;
class FloatImage3;
class RealImage;
class RealImage3;

/// The integer image that crosses the public surface.
///
/// The abstract base fixes the whole vocabulary of images, with defaults written through other
/// operations, so that a one-channel class has little to supply. Numerical work runs on planes:
/// operators copy an image into FloatImage or RealImage, compute, and write back.
///
/// Coordinates are (x, y), x from 0 to width - 1 and y from 0 to height - 1, and are not
/// checked. Operations that give a new image give the caller its ownership.
///
/// The order of the virtual operations is part of the interface.
class DiscreteImage {
  public:
    virtual ~DiscreteImage() = default;

    /// Class number; 0 where a class sets none.
    virtual int typeCode() const;

    /// A new image of the same size and pixels.
    virtual std::unique_ptr<DiscreteImage> clone() const = 0;
    /// Every n-th pixel: size (width / n, height / n), dst(i, j) = src(i n, j n).
    virtual std::unique_ptr<DiscreteImage> decimated(int n) const = 0;
    /// Each pixel in the corner of an n x n block whose rest is (r, g, b); null in the base.
    virtual std::unique_ptr<DiscreteImage> interleavedZoom(int n, int r, int g, int b) const;
    /// Each pixel as an n x n block.
    virtual std::unique_ptr<DiscreteImage> replicatedZoom(int n) const = 0;
    /// Size (2 width - 1, 2 height - 1): dst(2x, 2y) = src(x, y), all else zero.
    virtual std::unique_ptr<DiscreteImage> doubled() const = 0;
    /// dst(width - 1 - x, y) = src(x, y); the base mirrors value(x, y).
    virtual std::unique_ptr<DiscreteImage> mirroredX() const;
    /// dst(x, height - 1 - y) = src(x, y); the base mirrors value(x, y).
    virtual std::unique_ptr<DiscreteImage> mirroredY() const;
    /// A quarter turn counter-clockwise: dst(y, width - 1 - x) = src(x, y).
    virtual std::unique_ptr<DiscreteImage> rotatedCcw() const = 0;
    /// A quarter turn clockwise: dst(height - 1 - y, x) = src(x, y).
    virtual std::unique_ptr<DiscreteImage> rotatedCw() const = 0;
    /// dst(width - 1 - x, height - 1 - y) = src(x, y); the base turns value(x, y).
    virtual std::unique_ptr<DiscreteImage> rotated180() const;

    /// Number of colours by the class's own rule; -1 in the base.
    virtual int colorCount() const;

    /// Red from bits 16 to 23 of `colour`, green from 8 to 15, blue from 0 to 7.
    virtual void setPacked(int x, int y, int colour) = 0;
    /// Copies what both images cover; the base through setPacked of value(x, y).
    virtual void copyFrom(const DiscreteImage& image);

    /// Writes three planes, each by setChannelFromFloat.
    virtual void setFromFloat3(const FloatImage3& planes);
    /// Writes a plane into channel 1 (or lower: red), 2 (green) or 3 (blue); another channel
    /// writes nothing. Samples are truncated toward zero and keep their low byte: no clamping.
    ///
    /// Shapes:  the plane at least as large as the image.
    virtual void setChannelFromFloat(const FloatImage& plane, int channel) = 0;
    /// Writes three planes, each by setChannelFromReal.
    virtual void setFromReal3(const RealImage3& planes);
    /// As setChannelFromFloat, from doubles.
    virtual void setChannelFromReal(const RealImage& plane, int channel) = 0;
    /// Writes three planes, each by setChannelFromComplex, when part is 0; else does nothing.
    virtual void setFromComplex3(const ComplexPlane3& planes, int part);
    /// Part 0 writes the real sample, 1 the imaginary one, 2 the modulus; another part writes
    /// nothing. Channels and truncation as in setChannelFromFloat.
    virtual void setChannelFromComplex(const ComplexPlane& plane, int part, int channel) = 0;
    /// Copies channel 1 (or lower: red), 2 (green) or 3 (blue); the base does nothing.
    virtual void copyChannel(const DiscreteImage& image, int channel);
    /// Copies the region that both images, and the mask when given, cover. With a mask only the
    /// pixels where mask.value(x, y) equals getMaskValue(). The base copies value(x, y).
    virtual void copyMasked(const DiscreteImage& image, const DiscreteImage* mask);

    /// Sets every pixel to (r, g, b).
    virtual void fillRgb(int r, int g, int b);
    /// Sets every channel of every pixel to the low byte of v; the base does nothing.
    virtual void fill(int v);

    /// The value by which a mask pixel selects; 1 at first.
    virtual int getMaskValue() const;
    /// Sets the value by which a mask pixel selects.
    virtual void setMaskValue(int v);

    /// The part from (x, y) of at most w x h, cut at the border; null when nothing is left.
    virtual std::unique_ptr<DiscreteImage> subImage(int x, int y, int w, int h) const = 0;
    /// The part from (x0, y0) to (x1, y1), both included, with its origin set; no clipping.
    virtual std::unique_ptr<DiscreteImage> subImageCorners(int x0, int y0, int x1,
                                                           int y1) const = 0;
    /// At most n x n pixels by whole steps over the image; null in the base.
    virtual std::unique_ptr<DiscreteImage> thumbnail(int n) const;
    /// Nearest sample without a filter: dst(i, j) = src(i / fx, j / fy), truncated.
    virtual std::unique_ptr<DiscreteImage> resized(double fx, double fy) const = 0;

    /// Sets where this image lies inside a larger one.
    virtual void setOrigin(int x, int y);
    /// x of this image inside a larger one.
    virtual int getOriginX() const;
    /// y of this image inside a larger one.
    virtual int getOriginY() const;

    /// First byte of the pixels.
    virtual unsigned char* data() = 0;

    /// Lowest sample; 0.
    virtual int minValue() const;
    /// Highest sample; 255.
    virtual int maxValue() const;
    /// 8.
    virtual int bitsPerChannel() const;

    /// setRed(x sx, y sy, v).
    virtual void setRedScaled(int x, int y, int sx, int sy, int v);
    /// Stores the low byte of v.
    virtual void setRed(int x, int y, int v) = 0;
    /// setGreen(x sx, y sy, v).
    virtual void setGreenScaled(int x, int y, int sx, int sy, int v);
    /// Stores the low byte of v.
    virtual void setGreen(int x, int y, int v) = 0;
    /// setBlue(x sx, y sy, v).
    virtual void setBlueScaled(int x, int y, int sx, int sy, int v);
    /// Stores the low byte of v.
    virtual void setBlue(int x, int y, int v) = 0;
    /// setValue(x sx, y sy, v).
    virtual void setValueScaled(int x, int y, int sx, int sy, int v);
    /// Stores the low byte of v in every channel.
    virtual void setValue(int x, int y, int v) = 0;
    /// Stores the three low bytes.
    virtual void setRgb(int x, int y, int r, int g, int b) = 0;
    /// c = 1 is setGreen, 2 setBlue, anything else setRed.
    virtual void setChannel(int c, int x, int y, int v);

    /// value(x sx, y sy): the luminance, not the red sample.
    ///
    /// Quirk:   scaled-reads
    virtual int redScaled(int x, int y, int sx, int sy) const;
    /// The red sample.
    virtual int red(int x, int y) const = 0;
    /// value(x sx, y sy): the luminance, not the green sample.
    ///
    /// Quirk:   scaled-reads
    virtual int greenScaled(int x, int y, int sx, int sy) const;
    /// The green sample.
    virtual int green(int x, int y) const = 0;
    /// value(x sx, y sy): the luminance, not the blue sample.
    ///
    /// Quirk:   scaled-reads
    virtual int blueScaled(int x, int y, int sx, int sy) const;
    /// The blue sample.
    virtual int blue(int x, int y) const = 0;
    /// value(x sx, y sy).
    virtual int valueScaled(int x, int y, int sx, int sy) const;
    /// The luminance of a colour image, the sample of a grey one.
    virtual int value(int x, int y) const = 0;
    /// c = 1 is green, 2 blue, anything else red.
    virtual int getChannel(int c, int x, int y) const;
    /// value(x, y) unless a class has a cheaper grey.
    virtual int grey(int x, int y) const;

    /// Pixels of colour (r, g, b) become (r2, g2, b2); a one-channel image compares r and
    /// writes r2.
    virtual void replaceRgbByRgb(int r, int g, int b, int r2, int g2, int b2);
    /// Pixels of colour (r, g, b) get v in all channels; a one-channel image compares r.
    virtual void replaceRgbByValue(int r, int g, int b, int v);
    /// Pixels whose channels all equal v get v2 in all channels.
    virtual void replaceValueByValue(int v, int v2);

    /// Writes a colour told by intensity (0 to 255), hue (radians) and saturation (0 to 1).
    ///
    /// A component above 255 is drawn toward the intensity, which keeps the hue.
    ///
    /// Quirk:   hsi-third-sector
    virtual void setHsi(int x, int y, double intensity, double hue, double saturation);
    /// Writes a colour told by luma and the two chroma values, clamped to 0 and 255.
    virtual void setYiq(int x, int y, double luma, double i, double q);

    /// Writes "DiscreteImage(width,height) c=channels" and flushes the file.
    virtual void printTo(std::FILE* file) const;
    /// The same on the engine's standard output, without a flush.
    virtual void print() const;

    /// Restores the picture by a curvature flow; the base does nothing.
    virtual void restoreFullColor(int method, int iterations, double coeff);
    /// The same with a choice of colour space and of coupling; the base calls restoreFullColor
    /// and drops `space`, `kind` and `spare`.
    virtual void restoreSeparateColor(int space, int kind, int method, int iterations,
                                      double coeff, double spare);
    /// restoreSeparateColor channel by channel: kind 1 and spare 0.5.
    virtual void restoreSeparateColorDefault(int space, int method, int iterations,
                                             double coeff);
    /// restoreFullColor.
    virtual void restoreColorA(int method, int iterations, double coeff);
    /// restoreFullColor.
    virtual void restoreColorB(int method, int iterations, double coeff);

    // What follows has no place in the documented order and stays at the end.

    /// The pixels as packed bytes r, g, b without row padding, or null where a class keeps them
    /// in another form. Planes read a picture through it when they can; the accessors must give
    /// the same samples.
    virtual const unsigned char* packedRgb() const;

    /// Columns.
    int width() const { return width_; }
    /// Rows.
    int height() const { return height_; }
    /// Samples a pixel.
    int channels() const { return channels_; }
    /// The colour model that the class was made with.
    int colorModel() const { return colorModel_; }
    /// 1 for channels of 8 bits, 2 for 16.
    int depthClass() const { return depthClass_; }
    /// The width again.
    int rowLength() const { return rowLength_; }
    /// 4 atan(1).
    double pi() const { return pi_; }

  protected:
    /// Sizes below zero count as zero.
    DiscreteImage(int width, int height, int channels, int colorModel, int depthClass);
    DiscreteImage(const DiscreteImage&) = delete;
    DiscreteImage& operator=(const DiscreteImage&) = delete;

    int typeCode_ = 0;

  private:
    int originX_ = 0;
    int originY_ = 0;
    int width_;
    int height_;
    int channels_;
    int colorModel_;
    int depthClass_;
    int reserved_ = 0;
    int rowLength_;
    double pi_;
    int maskValue_ = 1;
};

}  // namespace orv
