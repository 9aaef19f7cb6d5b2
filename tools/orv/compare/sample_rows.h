#pragma once

#include <array>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// One row of a picture as separate channels, on the scale from 0 (black) to 255 (white).
///
/// Samples of 8 bits become the same whole numbers, samples of 16 bits are divided by 257, float
/// samples are multiplied by 255; so equal grey levels of different depths are equal numbers.
class SampleRow {
  public:
    /// Room for a row of `picture`, which has to outlive this.
    explicit SampleRow(const Picture& picture);

    /// Reads row y.
    void read(int y);

    /// The row of a channel of colour; a grey picture gives its one for each.
    const std::vector<double>& colour(int channel) const {
        return colours_[static_cast<std::size_t>(grey_ ? 0 : channel)];
    }
    /// The brightness of the row by Rec. 601; read() brings it up to date.
    const std::vector<double>& brightness() const { return grey_ ? colours_[0] : brightness_; }
    /// The row of the alpha channel; empty when there is none.
    const std::vector<double>& alpha() const { return alpha_; }

  private:
    const Picture& picture_;
    bool grey_;
    std::array<std::vector<double>, 3> colours_;
    std::vector<double> alpha_;
    std::vector<double> brightness_;
};

}  // namespace orv::cli
