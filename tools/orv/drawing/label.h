#pragma once

#include <string>
#include <string_view>

#include "drawing/canvas.h"

namespace orv::cli {

/// Height of a line of text in pixels: that of the font, `scale` times.
int labelHeight(int scale);

/// Width of a text in pixels.
int labelWidth(std::string_view utf8, int scale);

/// Draws one line of text with its left upper corner at (x, y).
///
/// The font is part of the program, so that every machine draws the same pixels: Latin, Greek
/// and Cyrillic letters. Any other character is an empty box.
///
/// Units:   each pixel of the font becomes scale x scale pixels.
void drawLabel(Canvas& canvas, int x, int y, std::string_view utf8, Colour ink, int scale);

/// The text, or its start and its end around "..." so that it fits `width` pixels.
std::string fittingLabel(std::string_view utf8, int width, int scale);

}  // namespace orv::cli
