#pragma once

#include <string>
#include <string_view>

namespace orv::cli {

/// The colour space of an ICC profile as its head names it: "RGB ", "GRAY", "CMYK"; empty when
/// there is none.
std::string_view profileSpace(std::string_view profile);

/// What an ICC profile calls itself, in ASCII; "without a name" for one that doesn't, empty for
/// no profile.
///
/// Source:  ICC.1:2022, tag 'desc' as textDescriptionType of version 2 or
///          multiLocalizedUnicodeType of version 4.
std::string profileName(std::string_view profile);

}  // namespace orv::cli
