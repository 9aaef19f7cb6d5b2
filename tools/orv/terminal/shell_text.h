#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// A text between single quotes, for shells that close, escape and reopen them.
std::string singleQuoted(std::string_view text);

/// A word as a shell takes it for one: in single quotes where it needs them.
std::string shellWord(std::string_view word);

/// A file name likewise; one that begins with a dash gets "./" before it.
std::string shellFile(std::string_view path);

/// The command as a user types it: "orv restore in.jpg --tau 2".
std::string commandText(std::string_view verb, const std::vector<std::string>& words);

}  // namespace orv::cli
