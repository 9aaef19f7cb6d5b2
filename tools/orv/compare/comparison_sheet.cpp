#include "compare/comparison_sheet.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "compare/comparison_numbers.h"
#include "compare/shown_picture.h"
#include "drawing/canvas.h"
#include "drawing/label.h"
#include "drawing/sheet_colours.h"
#include "terminal/messages.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

namespace {

/// Room for the labels of a small picture.
constexpr int kNarrowestPanel = 240;
/// The width of a sheet that its text is drawn on as the font is.
constexpr int kUsualWidth = 2000;
constexpr int kPanels = 3;

/// A row of panels with two lines of text above each.
struct Row {
    std::array<Picture, kPanels> pictures;
    std::array<std::string, kPanels> titles;
    std::array<std::string, kPanels> notes;
};

struct Layout {
    int scale = 1;
    int gap = 0;
    int line = 0;   ///< from one line of text to the next
    int panel = 0;  ///< width of a panel
    int width = 0;

    explicit Layout(int pictureWidth) : panel(std::max(pictureWidth, kNarrowestPanel)) {
        scale = std::max(1, (kPanels * panel + kUsualWidth / 2) / kUsualWidth);
        gap = 12 * scale;
        line = labelHeight(scale) + 2 * scale;
        width = kPanels * panel + (kPanels + 1) * gap;
    }
    int rowHeight(const Row& row) const {
        return 2 * line + row.pictures[0].samples.height + gap;
    }
};

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Sums of a grey picture over all rectangles from its corner; one row and column more.
std::vector<std::uint64_t> cornerSums(const Picture& grey) {
    const auto width = static_cast<std::size_t>(grey.samples.width);
    const auto height = static_cast<std::size_t>(grey.samples.height);
    std::vector<std::uint64_t> sums((width + 1) * (height + 1));
    for (std::size_t y = 0; y < height; ++y) {
        std::uint64_t row = 0;
        for (std::size_t x = 0; x < width; ++x) {
            row += grey.samples.bytes[y * width + x];
            sums[(y + 1) * (width + 1) + x + 1] = sums[y * (width + 1) + x + 1] + row;
        }
    }
    return sums;
}

/// Where a rectangle of a picture holds the largest sum; in its middle when nothing differs.
Place brightestPlace(const Picture& grey, int width, int height) {
    const std::vector<std::uint64_t> sums = cornerSums(grey);
    const auto stride = static_cast<std::size_t>(grey.samples.width) + 1;
    const auto sumTo = [&](int x, int y) {
        return sums[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x)];
    };
    const int lastX = grey.samples.width - width;
    const int lastY = grey.samples.height - height;
    Place best{lastX / 2, lastY / 2, width, height};
    std::uint64_t largest = 0;
    for (int y = 0; y <= lastY; ++y) {
        for (int x = 0; x <= lastX; ++x) {
            const std::uint64_t sum = sumTo(x + width, y + height) + sumTo(x, y) -
                                      sumTo(x + width, y) - sumTo(x, y + height);
            if (sum > largest) {
                largest = sum;
                best = {x, y, width, height};
            }
        }
    }
    return best;
}

/// The part as large as a panel that differs most, found on the reduced difference.
Place detailPlace(const Comparison& comparison, const Picture& difference, int reduction) {
    const InterleavedSamples& whole = comparison.before.samples;
    const InterleavedSamples& shown = difference.samples;
    const int width = std::min(whole.width, shown.width);
    const int height = std::min(whole.height, std::max(shown.height, width / 2));
    Place place = brightestPlace(shownMean(difference),
                                 std::min(shown.width, (width + reduction - 1) / reduction),
                                 std::min(shown.height, (height + reduction - 1) / reduction));
    place.width = width;
    place.height = height;
    place.x = std::min(place.x * reduction, whole.width - width);
    place.y = std::min(place.y * reduction, whole.height - height);
    return place;
}

std::string gainText(const PictureComparison& figures, int gain) {
    if (figures.identical()) {
        return "identical";
    }
    return (gain == 1 ? std::string("as it is") : "times " + std::to_string(gain)) +
           ", largest " + levelText(figures.figures.largest);
}

Row wholeRow(const Comparison& comparison, int reduction, int gain) {
    Row row;
    row.pictures = {shownPicture(comparison.before, reduction),
                    shownPicture(comparison.after, reduction),
                    shownDifference(comparison.before, comparison.after, reduction, gain)};
    row.titles = {"before: " + printable(cleanUtf8(comparison.beforeName(), "?")),
                  "after: " + printable(cleanUtf8(comparison.afterName(), "?")), "difference"};
    const std::string shown = reduction == 1 ? "" : ", shown at 1/" + std::to_string(reduction);
    row.notes = {pictureKind(comparison.before) + shown, pictureKind(comparison.after) + shown,
                 gainText(comparison.figures, gain)};
    return row;
}

Row detailRow(const Comparison& comparison, const Place& place, int gain) {
    const auto part = [&](const Picture& picture) {
        return partOfPicture(picture, place.x, place.y, place.width, place.height);
    };
    const Picture before = part(comparison.before);
    const Picture after = part(comparison.after);
    Row row;
    row.pictures = {shownPicture(before, 1), shownPicture(after, 1),
                    shownDifference(before, after, 1, gain)};
    row.titles = {"before, 100 %", "after, 100 %", "difference, 100 %"};
    row.notes.fill(std::to_string(place.width) + " x " + std::to_string(place.height) +
                   " pixels at (" + std::to_string(place.x) + ", " + std::to_string(place.y) +
                   ")");
    row.notes[2] = "where the pictures differ most";
    if (comparison.figures.identical()) {
        row.notes[2] = "identical";
    }
    return row;
}

/// The figures in as many lines as the width asks for.
std::vector<std::string> figureLines(const PictureComparison& figures, int width, int scale) {
    const DifferenceFigures& all = figures.figures;
    const std::array<std::string, 5> items{
        "PSNR " + psnrText(all), "SSIM " + ssimText(figures.ssim),
        "mean difference " + levelText(all.mean), "largest " + levelText(all.largest),
        "changed " + shareText(all.changed)};
    std::vector<std::string> lines{items[0]};
    for (std::size_t i = 1; i < items.size(); ++i) {
        const std::string longer = lines.back() + "   " + items[i];
        if (labelWidth(longer, scale) <= width) {
            lines.back() = longer;
        } else {
            lines.push_back(items[i]);
        }
    }
    return lines;
}

void drawRow(Canvas& canvas, const Layout& layout, const Row& row, int y) {
    for (int i = 0; i < kPanels; ++i) {
        const auto panel = static_cast<std::size_t>(i);
        const int x = layout.gap + i * (layout.panel + layout.gap);
        const auto draw = [&](const std::string& text, int line, Colour ink) {
            drawLabel(canvas, x, y + line * layout.line,
                      fittingLabel(text, layout.panel, layout.scale), ink, layout.scale);
        };
        draw(row.titles[panel], 0, kInk);
        draw(row.notes[panel], 1, kSoftInk);
        canvas.paste(row.pictures[panel], x, y + 2 * layout.line);
    }
}

}  // namespace

int differenceGain(const PictureComparison& figures) {
    constexpr int kMostGain = 32;
    const int usual = std::max(1, figures.differenceOfShare(0.99));
    int gain = 1;
    while (gain < kMostGain && 2 * gain * usual <= ChannelComparison::kLevels) {
        gain *= 2;
    }
    return figures.identical() ? 1 : gain;
}

Picture comparisonSheet(const Comparison& comparison) {
    const int reduction = reductionForSide(comparison.before, kSheetSide);
    const int gain = differenceGain(comparison.figures);
    std::vector<Row> rows;
    rows.push_back(wholeRow(comparison, reduction, gain));
    if (reduction > 1) {
        const Place place = detailPlace(comparison, rows[0].pictures[2], reduction);
        rows.push_back(detailRow(comparison, place, gain));
    }

    const Layout layout(rows[0].pictures[0].samples.width);
    const std::vector<std::string> lines =
        figureLines(comparison.figures, layout.width - 2 * layout.gap, layout.scale);
    int height = layout.gap;
    for (const Row& row : rows) {
        height += layout.rowHeight(row);
    }
    height += static_cast<int>(lines.size()) * layout.line + layout.gap;

    Canvas canvas(layout.width, height, kGround);
    int y = layout.gap;
    for (const Row& row : rows) {
        drawRow(canvas, layout, row, y);
        y += layout.rowHeight(row);
    }
    for (const std::string& line : lines) {
        drawLabel(canvas, layout.gap, y, line, kInk, layout.scale);
        y += layout.line;
    }
    Picture sheet = canvas.take();
    if (comparison.after.colours == 3) {
        sheet.metadata = comparison.after.metadata;
    }
    return sheet;
}

}  // namespace orv::cli
