#include "operators/colour/color_swatch.h"

namespace orv {

ColorSwatch::ColorSwatch(int x, int y, int width, int height, double mean, double deviation,
                         double alpha, double beta)
    : x_(x),
      y_(y),
      width_(width),
      height_(height),
      mean_(mean),
      deviation_(deviation),
      alpha_(alpha),
      beta_(beta) {}

ColorSwatch::~ColorSwatch() = default;

double ColorSwatch::score() const {
    return (deviation_ + mean_) * 0.5;
}

}  // namespace orv
