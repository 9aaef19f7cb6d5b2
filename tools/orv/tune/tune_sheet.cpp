#include "tune/tune_sheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "drawing/canvas.h"
#include "drawing/label.h"
#include "drawing/sheet_colours.h"

namespace orv::cli {

namespace {

/// In the place of a result that the method refused.
constexpr Colour kEmpty{214, 214, 214};
/// Room for the labels of a small crop.
constexpr int kNarrowestCell = 256;
/// Crops of this width and more have labels of twice the size, and so on.
constexpr int kWidthOfScale = 768;
constexpr int kHeadLines = 3;

/// Where everything stands.
struct Layout {
    int scale;
    int gap;
    int line;
    int cellWidth;
    int cellHeight;
    int columns;
    int rows;

    Layout(const TuneSheet& sheet, int cropWidth, int cropHeight)
        : scale(std::max(1, cropWidth / kWidthOfScale)),
          gap(10 * scale),
          line(labelHeight(scale) + 2 * scale),
          cellWidth(std::max(cropWidth, kNarrowestCell * scale)),
          cellHeight(2 * line + cropHeight) {
        const auto first = static_cast<int>(sheet.axes[0].values.size());
        if (sheet.axes.size() == 2) {
            columns = first + 1;
            rows = static_cast<int>(sheet.axes[1].values.size());
        } else {
            columns = static_cast<int>(std::ceil(std::sqrt(first + 1.0)));
            rows = (first + columns) / columns;
        }
    }
    int width() const { return columns * (cellWidth + gap) + gap; }
    int top() const { return kHeadLines * line + 2 * gap; }
    int height() const { return top() + rows * (cellHeight + gap); }
    int x(int column) const { return gap + column * (cellWidth + gap); }
    int y(int row) const { return top() + row * (cellHeight + gap); }
};

std::string number(const char* format, double value) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

std::string figuresText(const TuneCell& cell) {
    if (!cell.error.empty()) {
        return "refused";
    }
    const std::string change =
        std::isinf(cell.psnr) ? std::string("unchanged") : number("PSNR %.1f dB", cell.psnr);
    return number("noise %.1f, ", cell.noise) + change;
}

class Sheet {
  public:
    explicit Sheet(const TuneSheet& sheet)
        : sheet_(sheet),
          layout_(sheet, sheet.crop.width, sheet.crop.height),
          canvas_(layout_.width(), layout_.height(), kGround) {}

    Picture draw() {
        head();
        // Rows of their own begin with the original each.
        for (int row = 0; row < (sheet_.axes.size() == 2 ? layout_.rows : 1); ++row) {
            cell(0, row, "original", number("noise %.1f", sheet_.noise), &sheet_.original);
        }
        for (std::size_t i = 0; i < sheet_.cells.size(); ++i) {
            const TuneCell& one = sheet_.cells[i];
            int place = static_cast<int>(i) + 1;
            if (sheet_.axes.size() == 2) {
                const auto across = static_cast<int>(sheet_.axes[0].values.size());
                place += static_cast<int>(i) / across;
            }
            cell(place % layout_.columns, place / layout_.columns, valuesText(sheet_, one),
                 figuresText(one), one.error.empty() ? &one.crop : nullptr);
        }
        return canvas_.take();
    }

  private:
    void head() {
        std::string what = "orv " + sheet_.verb;
        for (const auto& [name, value] : sheet_.fixed) {
            what += " --" + name + " " + value;
        }
        const CropPlace& crop = sheet_.crop;
        const std::string where = sheet_.input.substr(sheet_.input.find_last_of('/') + 1) +
                                  ", " + std::to_string(crop.width) + " x " +
                                  std::to_string(crop.height) + " pixels from (" +
                                  std::to_string(crop.x) + ", " + std::to_string(crop.y) + ")";
        const std::string figures =
            std::string("noise: estimated, PSNR: against the original, both of the ") +
            (sheet_.whole() ? "whole picture" : "part and 256 pixels around");
        int y = layout_.gap;
        for (const std::string& text : {what, where, figures}) {
            label(layout_.gap, y, text, layout_.width() - 2 * layout_.gap,
                  y == layout_.gap ? kInk : kSoftInk);
            y += layout_.line;
        }
    }

    void label(int x, int y, const std::string& text, int width, Colour ink) {
        drawLabel(canvas_, x, y, fittingLabel(text, width, layout_.scale), ink, layout_.scale);
    }

    void cell(int column, int row, const std::string& title, const std::string& figures,
              const Picture* picture) {
        const int x = layout_.x(column);
        const int y = layout_.y(row);
        label(x, y, title, layout_.cellWidth, kInk);
        label(x, y + layout_.line, figures, layout_.cellWidth, kSoftInk);
        if (picture != nullptr) {
            canvas_.paste(*picture, x, y + 2 * layout_.line);
        } else {
            canvas_.fill(x, y + 2 * layout_.line, sheet_.crop.width, sheet_.crop.height,
                         kEmpty);
        }
    }

    const TuneSheet& sheet_;
    Layout layout_;
    Canvas canvas_;
};

}  // namespace

Picture drawSheet(const TuneSheet& sheet) {
    return Sheet(sheet).draw();
}

double sheetPixels(const TuneSheet& sheet, int cropWidth, int cropHeight) {
    const Layout layout(sheet, cropWidth, cropHeight);
    return static_cast<double>(layout.width()) * layout.height();
}

std::string valuesText(const TuneSheet& sheet, const TuneCell& cell) {
    std::string text;
    for (std::size_t i = 0; i < sheet.axes.size(); ++i) {
        text += (i == 0 ? "" : ", ") + sheet.axes[i].name + " " + cell.values[i];
    }
    return text;
}

}  // namespace orv::cli
