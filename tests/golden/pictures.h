#pragma once

#include <string>
#include <vector>

namespace golden {

/// A drawn bitmap: rows of 3 bytes a pixel, padded to a multiple of 4 bytes.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rows;
    /// The same pixels without padding.
    std::vector<unsigned char> packed() const;
};

/// Draws what a recipe names: `pattern:WIDTHxHEIGHT:SEED`.
///
/// Patterns are black, white, grey, checker, gradient, steps, noise, colours and dots. They use
/// whole numbers alone, so that they are equal everywhere. The padding isn't 0.
/// Fails:   false for anything else.
bool drawPicture(const std::string& recipe, Picture& picture);

}  // namespace golden
