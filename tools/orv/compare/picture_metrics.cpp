#include "compare/picture_metrics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "compare/sample_rows.h"
#include "compare/structural_similarity.h"

namespace orv::cli {

namespace {

constexpr double kWhite = 255.0;

/// Adds a row of one channel; until finish() the figures hold sums.
void addRow(const std::vector<double>& before, const std::vector<double>& after,
            ChannelComparison& channel) {
    double squares = 0.0;
    double absolutes = 0.0;
    double shifts = 0.0;
    double largest = channel.figures.largest;
    std::size_t changed = 0;
    for (std::size_t x = 0; x < before.size(); ++x) {
        const double difference = after[x] - before[x];
        const double absolute = std::abs(difference);
        squares += difference * difference;
        absolutes += absolute;
        shifts += difference;
        largest = std::max(largest, absolute);
        changed += difference != 0.0 ? 1 : 0;
        // Truncation rounds to nearest, as every sum is positive.
        ++channel.differences[static_cast<std::size_t>(difference + kWhite + 0.5)];
        ++channel.before[static_cast<std::size_t>(before[x] + 0.5)];
        ++channel.after[static_cast<std::size_t>(after[x] + 0.5)];
    }
    DifferenceFigures& figures = channel.figures;
    figures.meanSquare += squares;
    figures.mean += absolutes;
    figures.shift += shifts;
    figures.largest = largest;
    figures.changed += static_cast<double>(changed);
}

void divide(DifferenceFigures& figures, double count) {
    figures.meanSquare /= count;
    figures.mean /= count;
    figures.shift /= count;
    figures.changed /= count;
}

/// Makes means of the sums, for each channel and for all.
void finish(PictureComparison& comparison, double pixels) {
    DifferenceFigures& all = comparison.figures;
    for (ChannelComparison& channel : comparison.channels) {
        DifferenceFigures& figures = channel.figures;
        all.meanSquare += figures.meanSquare;
        all.mean += figures.mean;
        all.shift += figures.shift;
        all.changed += figures.changed;
        all.largest = std::max(all.largest, figures.largest);
        divide(figures, pixels);
    }
    divide(all, pixels * static_cast<double>(comparison.channels.size()));
}

AlphaComparison alphaKinds(const Picture& before, const Picture& after) {
    if (before.alpha && after.alpha) {
        return AlphaComparison::Equal;
    }
    return before.alpha  ? AlphaComparison::OnlyBefore
           : after.alpha ? AlphaComparison::OnlyAfter
                         : AlphaComparison::None;
}

std::string sizeOf(const std::string& path, const Picture& picture) {
    return path + " has " + std::to_string(picture.samples.width) + " x " +
           std::to_string(picture.samples.height) + " pixels";
}

}  // namespace

double DifferenceFigures::psnr() const {
    return meanSquare > 0.0 ? 10.0 * std::log10(kWhite * kWhite / meanSquare)
                            : std::numeric_limits<double>::infinity();
}

int PictureComparison::differenceOfShare(double share) const {
    std::array<double, ChannelComparison::kLevels + 1> counts{};
    double total = 0.0;
    for (const ChannelComparison& channel : channels) {
        for (int d = -ChannelComparison::kLevels; d <= ChannelComparison::kLevels; ++d) {
            const auto count = static_cast<double>(
                channel.differences[static_cast<std::size_t>(d + ChannelComparison::kLevels)]);
            counts[static_cast<std::size_t>(std::abs(d))] += count;
            total += count;
        }
    }
    double sum = 0.0;
    for (std::size_t d = 0; d < counts.size(); ++d) {
        sum += counts[d];
        if (sum >= share * total) {
            return static_cast<int>(d);
        }
    }
    return ChannelComparison::kLevels;
}

std::string sizeRefusal(const std::string& beforePath, const Picture& before,
                        const std::string& afterPath, const Picture& after) {
    if (before.samples.width == after.samples.width &&
        before.samples.height == after.samples.height) {
        return {};
    }
    return sizeOf(beforePath, before) + " and " + sizeOf(afterPath, after) +
           "; pictures of one size can be compared";
}

PictureComparison comparePictures(const Picture& before, const Picture& after) {
    PictureComparison comparison;
    const bool grey = before.colours == 1 && after.colours == 1;
    comparison.channels.resize(grey ? 1 : 3);
    constexpr std::array<std::string_view, 3> kNames{"red", "green", "blue"};
    for (std::size_t i = 0; i < comparison.channels.size(); ++i) {
        comparison.channels[i].name = grey ? "grey" : kNames[i];
    }
    comparison.alpha = alphaKinds(before, after);

    SampleRow first(before);
    SampleRow second(after);
    StructuralSimilarity similarity(before.samples.width);
    for (int y = 0; y < before.samples.height; ++y) {
        first.read(y);
        second.read(y);
        for (std::size_t i = 0; i < comparison.channels.size(); ++i) {
            const int channel = static_cast<int>(i);
            addRow(first.colour(channel), second.colour(channel), comparison.channels[i]);
        }
        similarity.addRow(first.brightness(), second.brightness());
        if (comparison.alpha == AlphaComparison::Equal && first.alpha() != second.alpha()) {
            comparison.alpha = AlphaComparison::Differs;
        }
    }
    comparison.ssim = similarity.mean();
    finish(comparison, static_cast<double>(before.samples.width) * before.samples.height);
    return comparison;
}

std::string_view nameOf(AlphaComparison alpha) {
    switch (alpha) {
        case AlphaComparison::None:
            return "none";
        case AlphaComparison::Equal:
            return "equal";
        case AlphaComparison::Differs:
            return "differs";
        case AlphaComparison::OnlyBefore:
            return "only before";
        case AlphaComparison::OnlyAfter:
            break;
    }
    return "only after";
}

}  // namespace orv::cli
