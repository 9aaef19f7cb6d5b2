#pragma once

namespace orv {

class DiscreteImage;
class FloatImage;
class FloatImage3;
class RealImage;
class RealImage3;

/// Columns of an image, for constructors that see it by name alone.
int imageWidth(const DiscreteImage& image);
/// Rows of an image.
int imageHeight(const DiscreteImage& image);
/// Samples a pixel of an image.
int imageChannels(const DiscreteImage& image);

/// plane(x, y) = image.value(x, y) at every sample of the plane.
///
/// Shapes:  the image at least as large as the plane.
/// Cost:    one pass in tiles when the image gives packed bytes, else a virtual call a sample.
void readValue(const DiscreteImage& image, FloatImage& plane);
void readValue(const DiscreteImage& image, RealImage& plane);

/// plane(x, y) = the sample of channel 1 (red), 2 (green), 3 (blue) or grey for anything else.
void readChannel(const DiscreteImage& image, int channel, FloatImage& plane);
void readChannel(const DiscreteImage& image, int channel, RealImage& plane);

/// Fills three planes from a colour image in one pass, plane i from channel i + 1, which it
/// keeps as its channel().
void readThreeChannels(const DiscreteImage& image, FloatImage3& planes);
void readThreeChannels(const DiscreteImage& image, RealImage3& planes);

}  // namespace orv
