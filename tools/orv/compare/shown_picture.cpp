#include "compare/shown_picture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "compare/sample_rows.h"

namespace orv::cli {

namespace {

int quotientUp(int value, int divisor) {
    return (value + divisor - 1) / divisor;
}

/// Makes an 8-bit picture of rows that come one after the other.
class Reducer {
  public:
    Reducer(const Picture& like, int colours, int reduction)
        : reduction_(reduction), width_(like.samples.width), height_(like.samples.height) {
        picture_.colours = colours;
        InterleavedSamples& samples = picture_.samples;
        samples.width = quotientUp(width_, reduction);
        samples.height = quotientUp(height_, reduction);
        samples.channels = colours;
        samples.depth = SampleDepth::Bits8;
        sums_.resize(static_cast<std::size_t>(samples.width) *
                     static_cast<std::size_t>(colours));
        samples.bytes.reserve(sums_.size() * static_cast<std::size_t>(samples.height));
    }

    /// Adds to the sums of one channel; all channels of a row come before endRow().
    void add(int channel, const std::vector<double>& row) {
        const auto step = static_cast<std::size_t>(picture_.colours);
        double* sum = sums_.data() + channel;
        int inSquare = 0;
        for (const double sample : row) {
            *sum += sample;
            if (++inSquare == reduction_) {
                inSquare = 0;
                sum += step;
            }
        }
    }

    void endRow() {
        ++rowsTaken_;
        if (rowsTaken_ % reduction_ != 0 && rowsTaken_ != height_) {
            return;
        }
        const int rows = (rowsTaken_ - 1) % reduction_ + 1;
        const auto colours = static_cast<std::size_t>(picture_.colours);
        for (std::size_t i = 0; i < sums_.size(); ++i) {
            const int x = static_cast<int>(i / colours);
            const int columns = std::min(reduction_, width_ - x * reduction_);
            const double mean = sums_[i] / (static_cast<double>(rows) * columns);
            picture_.samples.bytes.push_back(
                static_cast<unsigned char>(std::min(mean, 255.0) + 0.5));
            sums_[i] = 0.0;
        }
    }

    Picture take() { return std::move(picture_); }

  private:
    int reduction_;
    int width_;
    int height_;
    int rowsTaken_ = 0;
    std::vector<double> sums_;
    Picture picture_;
};

}  // namespace

int reductionForSide(const Picture& picture, int side) {
    return quotientUp(std::max(picture.samples.width, picture.samples.height), side);
}

int reductionForPixels(const Picture& picture, double pixels) {
    int reduction = 1;
    while (static_cast<double>(quotientUp(picture.samples.width, reduction)) *
               quotientUp(picture.samples.height, reduction) >
           pixels) {
        ++reduction;
    }
    return reduction;
}

Picture shownPicture(const Picture& picture, int reduction) {
    Reducer reducer(picture, picture.colours, reduction);
    SampleRow row(picture);
    for (int y = 0; y < picture.samples.height; ++y) {
        row.read(y);
        for (int channel = 0; channel < picture.colours; ++channel) {
            reducer.add(channel, row.colour(channel));
        }
        reducer.endRow();
    }
    Picture shown = reducer.take();
    shown.metadata = picture.metadata;
    return shown;
}

Picture shownDifference(const Picture& before, const Picture& after, int reduction,
                        double gain) {
    const int colours = std::max(before.colours, after.colours);
    Reducer reducer(before, colours, reduction);
    SampleRow first(before);
    SampleRow second(after);
    std::vector<double> difference(static_cast<std::size_t>(before.samples.width));
    for (int y = 0; y < before.samples.height; ++y) {
        first.read(y);
        second.read(y);
        for (int channel = 0; channel < colours; ++channel) {
            const std::vector<double>& a = first.colour(channel);
            const std::vector<double>& b = second.colour(channel);
            for (std::size_t x = 0; x < difference.size(); ++x) {
                difference[x] = std::min(gain * std::abs(b[x] - a[x]), 255.0);
            }
            reducer.add(channel, difference);
        }
        reducer.endRow();
    }
    return reducer.take();
}

Picture shownMean(const Picture& colour) {
    Picture mean = colour;
    if (colour.colours == 1) {
        return mean;
    }
    mean.colours = 1;
    mean.samples.channels = 1;
    const std::vector<unsigned char>& in = colour.samples.bytes;
    std::vector<unsigned char>& out = mean.samples.bytes;
    out.resize(in.size() / 3);
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] =
            static_cast<unsigned char>((in[3 * i] + in[3 * i + 1] + in[3 * i + 2] + 1) / 3);
    }
    return mean;
}

Picture partOfPicture(const Picture& picture, int x, int y, int width, int height) {
    const InterleavedSamples& whole = picture.samples;
    Picture part;
    part.colours = picture.colours;
    part.alpha = picture.alpha;
    part.samples = {width, height, whole.channels, whole.depth, {}};
    const std::size_t pixel = static_cast<std::size_t>(whole.channels) * bytesOf(whole.depth);
    const std::size_t row = static_cast<std::size_t>(whole.width) * pixel;
    for (int line = y; line < y + height; ++line) {
        const auto from = whole.bytes.begin() +
                          static_cast<std::ptrdiff_t>(static_cast<std::size_t>(line) * row +
                                                      static_cast<std::size_t>(x) * pixel);
        part.samples.bytes.insert(
            part.samples.bytes.end(), from,
            from + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(width) * pixel));
    }
    return part;
}

}  // namespace orv::cli
