#pragma once

#include <string>

namespace orv::cli {

/// The manual page orv(1) in the man macros of roff, made from the table of the verbs; it has no
/// date, so that a build gives the same bytes again.
std::string manPage();

}  // namespace orv::cli
