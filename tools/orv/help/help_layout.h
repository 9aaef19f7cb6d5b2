#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orv::cli {

/// The width of all help, in characters.
inline constexpr std::size_t kHelpWidth = 80;
/// Where the right side of a row begins.
inline constexpr std::size_t kHelpColumn = 26;

/// "  left      right", with the right side wrapped under itself.
std::string helpRow(const std::string& left, const std::string& right,
                    std::size_t column = kHelpColumn);

/// A text in lines of at most kHelpWidth characters, with `indent` before all but the first.
///
/// A line break stays one, and a line that begins with a space is left as it is.
std::string helpParagraphs(std::string_view text, std::size_t indent = 0);

/// A text whose spaces break no line.
std::string unbroken(std::string text);

/// A help text whose "[default: ...]" breaks no line.
std::string withUnbrokenDefault(std::string_view help);

/// A text with plain spaces again.
std::string plainSpaces(std::string text);

/// The number of lines of a text.
std::size_t lineCount(std::string_view text);

}  // namespace orv::cli
