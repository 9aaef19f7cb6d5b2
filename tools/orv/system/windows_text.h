#pragma once

#include <string>
#include <string_view>

namespace orv::cli {

/// A text of this program, in UTF-8, as Windows takes it. What is no UTF-8 becomes U+FFFD.
std::wstring wideText(std::string_view text);

/// A text of Windows in UTF-8; a surrogate without its other half becomes U+FFFD.
std::string narrowText(std::wstring_view text);

/// A path as Windows takes it. One that is long gets the mark that lifts the limit of 260
/// characters.
std::wstring widePath(std::string_view path);

/// A path of Windows with '/' between its parts, without the mark of long paths.
std::string narrowPath(std::wstring_view path);

/// Sets errno to what a call of Windows failed with. Always false.
bool noteError(unsigned long error);

}  // namespace orv::cli
