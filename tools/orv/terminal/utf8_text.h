#pragma once

#include <string>
#include <string_view>

namespace orv::cli {

/// Stands for what can't be shown, U+FFFD.
inline constexpr std::string_view kReplacementMark = "\xEF\xBF\xBD";

/// The text with every byte that is no UTF-8 replaced by a mark, as JSON texts and pages need it.
std::string cleanUtf8(std::string_view text, std::string_view mark = kReplacementMark);

}  // namespace orv::cli
