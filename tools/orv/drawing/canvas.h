#pragma once

#include "files/image_file.h"

namespace orv::cli {

/// A colour of 8 bits a channel.
struct Colour {
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
};

/// A colour picture of 8 bits to draw on. What falls outside is left out.
class Canvas {
  public:
    /// All of one colour.
    Canvas(int width, int height, Colour ground);

    /// Pixels in x.
    int width() const { return width_; }
    /// Pixels in y.
    int height() const { return height_; }

    /// Fills a rectangle.
    void fill(int x, int y, int width, int height, Colour colour);

    /// Puts a picture of 8 bits, grey or colour, with its left upper corner at (x, y). Alpha is
    /// left out.
    void paste(const Picture& picture, int x, int y);

    /// The picture without metadata; the canvas is empty from then on.
    Picture take();

  private:
    unsigned char* pixel(int x, int y);

    int width_;
    int height_;
    std::vector<unsigned char> samples_;
};

}  // namespace orv::cli
