#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orv::cli {

/// The shells that have completions.
std::span<const std::string_view> completionShells();

/// The script of a shell, made from the table of the verbs; empty for another shell.
std::string completionsFor(std::string_view shell);

std::string bashCompletions();
std::string zshCompletions();
std::string fishCompletions();

}  // namespace orv::cli
