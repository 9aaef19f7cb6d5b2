#pragma once

namespace orv {

/// A small square of a colour picture: how light and how lively it is, and the colour at its
/// middle.
///
/// Units:   x, y, width, height pixels; the rest in l, alpha, beta.
class ColorSwatch {
  public:
    ColorSwatch(int x, int y, int width, int height, double mean, double deviation,
                double alpha, double beta);
    virtual ~ColorSwatch();

    /// (deviation + mean) * 0.5, the number that pixels are matched by.
    virtual double score() const;

    /// Left edge in its picture.
    int x() const { return x_; }
    /// Upper edge.
    int y() const { return y_; }
    /// Samples in x.
    int width() const { return width_; }
    /// Samples in y.
    int height() const { return height_; }
    /// Mean of l over the square.
    double mean() const { return mean_; }
    /// Standard deviation of l over the square.
    double deviation() const { return deviation_; }
    /// alpha at the middle.
    double alpha() const { return alpha_; }
    /// beta at the middle.
    double beta() const { return beta_; }

  private:
    int x_;
    int y_;
    int width_;
    int height_;
    double mean_;
    double deviation_;
    double alpha_;
    double beta_;
};

}  // namespace orv
