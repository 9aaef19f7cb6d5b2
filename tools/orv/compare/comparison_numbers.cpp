#include "compare/comparison_numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <vector>

#include "terminal/messages.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

namespace {

template <typename... Values>
std::string formatted(const char* format, Values... values) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

void addPicture(JsonText& json, std::string_view key, const std::string& name,
                const Picture& picture) {
    json.beginObject(key);
    json.member("name", cleanUtf8(name, "?"));
    json.memberNumber("width", picture.samples.width);
    json.memberNumber("height", picture.samples.height);
    json.memberNumber("bits", 8.0 * static_cast<double>(bytesOf(picture.samples.depth)));
    json.memberNumber("colours", picture.colours);
    json.memberBool("alpha", picture.alpha);
    json.end();
}

/// A PSNR that is infinite becomes null, as JSON has no such number.
void addFigures(JsonText& json, const DifferenceFigures& figures) {
    json.memberBool("identical", figures.changed == 0.0);
    json.memberNumber("psnr", figures.psnr());
    json.memberNumber("meanSquare", figures.meanSquare);
    json.memberNumber("meanDifference", figures.mean);
    json.memberNumber("maxDifference", figures.largest);
    json.memberNumber("meanShift", figures.shift);
    json.memberNumber("changed", figures.changed);
}

template <std::size_t size>
void addCounts(JsonText& json, std::string_view name,
               const std::array<std::uint64_t, size>& counts) {
    json.memberNumbers(name, std::vector<double>(counts.begin(), counts.end()));
}

std::string left(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string right(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

constexpr std::size_t kNameColumn = 20;

std::string figureRow(std::string_view name, const std::string& value) {
    return left(std::string(name), kNameColumn) + value + "\n";
}

std::string channelRows(const PictureComparison& figures) {
    const auto row = [](const std::string& name, const std::array<std::string, 4>& cells) {
        return left(name, 10) + right(cells[0], 10) + right(cells[1], 10) +
               right(cells[2], 10) + right(cells[3], 11) + "\n";
    };
    std::string text = "\n" + row("channel", {"PSNR", "mean", "largest", "changed"});
    for (const ChannelComparison& channel : figures.channels) {
        const DifferenceFigures& own = channel.figures;
        text +=
            row(std::string(channel.name), {psnrText(own), levelText(own.mean),
                                            levelText(own.largest), shareText(own.changed)});
    }
    return text;
}

/// What the figures leave out, a line each.
std::string notes(const Comparison& comparison) {
    std::string text;
    if (comparison.before.colours != comparison.after.colours) {
        text += "The grey picture counts as three equal channels.\n";
    }
    switch (comparison.figures.alpha) {
        case AlphaComparison::None:
            break;
        case AlphaComparison::Equal:
            text += "Alpha is equal in both and does not count.\n";
            break;
        case AlphaComparison::Differs:
            text += "Alpha differs and does not count.\n";
            break;
        case AlphaComparison::OnlyBefore:
            text += "Only the picture before has alpha, which does not count.\n";
            break;
        case AlphaComparison::OnlyAfter:
            text += "Only the picture after has alpha, which does not count.\n";
            break;
    }
    return text.empty() ? text : "\n" + text;
}

}  // namespace

void addComparison(JsonText& json, const Comparison& comparison) {
    const PictureComparison& figures = comparison.figures;
    json.member("program", "orv " ORV_VERSION);
    json.member("command", cleanUtf8(comparison.facts.command, "?"));
    addPicture(json, "before", comparison.beforeName(), comparison.before);
    addPicture(json, "after", comparison.afterName(), comparison.after);
    json.member("alpha", nameOf(figures.alpha));
    addFigures(json, figures.figures);
    json.memberNumber("ssim", figures.ssim);
    json.beginArray("channels");
    for (const ChannelComparison& channel : figures.channels) {
        json.beginObject();
        json.member("name", channel.name);
        addFigures(json, channel.figures);
        addCounts(json, "differences", channel.differences);
        addCounts(json, "before", channel.before);
        addCounts(json, "after", channel.after);
        json.end();
    }
    json.end();
}

std::string comparisonJson(const Comparison& comparison) {
    JsonText json;
    json.beginObject();
    addComparison(json, comparison);
    json.end();
    return json.take();
}

std::string comparisonTable(const Comparison& comparison) {
    const PictureComparison& figures = comparison.figures;
    const DifferenceFigures& all = figures.figures;
    std::string text = figureRow("before", printable(comparison.beforeName()));
    text += figureRow("", pictureKind(comparison.before));
    text += figureRow("after", printable(comparison.afterName()));
    text += figureRow("", pictureKind(comparison.after)) + "\n";
    text += figureRow("PSNR", psnrText(all) + (figures.identical() ? ": identical" : ""));
    text += figureRow("SSIM", ssimText(figures.ssim) +
                                  (std::isnan(figures.ssim) ? " below 11 x 11 pixels" : ""));
    text += figureRow("mean difference", levelText(all.mean) + " grey levels of 0 to 255");
    text += figureRow("largest difference", levelText(all.largest) + " grey levels");
    text += figureRow("changed samples", shareText(all.changed));
    if (figures.channels.size() > 1 && !figures.identical()) {
        text += channelRows(figures);
    }
    return text + notes(comparison);
}

std::string psnrText(const DifferenceFigures& figures) {
    const double psnr = figures.psnr();
    return std::isfinite(psnr) ? formatted("%.2f dB", psnr) : "infinite";
}

std::string ssimText(double ssim) {
    // What isn't equal never reads as if it were.
    return std::isnan(ssim) ? "none"
           : ssim < 1.0     ? formatted("%.4f", std::min(ssim, 0.9999))
                            : "1";
}

std::string levelText(double levels) {
    if (levels == std::floor(levels)) {
        return formatted("%.0f", levels);
    }
    return levels < 0.01 ? formatted("%.2g", levels) : formatted("%.2f", levels);
}

std::string shareText(double share) {
    if (share == 0.0 || share == 1.0) {
        return share == 0.0 ? "0 %" : "100 %";
    }
    if (share < 0.001) {
        return formatted("%.2g %%", 100.0 * share);
    }
    return formatted("%.1f %%", std::min(100.0 * share, 99.9));
}

}  // namespace orv::cli
