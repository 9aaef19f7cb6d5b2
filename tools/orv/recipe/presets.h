#pragma once

#include <span>
#include <string>
#include <string_view>

#include "recipe/recipe.h"

namespace orv::cli {

/// A recipe that comes with the tool.
struct Preset {
    std::string_view name;
    std::string_view summary;  ///< one line
    std::string_view text;     ///< the recipe as JSON
};

/// All presets, by name.
std::span<const Preset> presets();

/// Reads a preset by its name.
///
/// Fails:   with one line: "unknown preset 'scn', did you mean 'scan'? (presets: ...)".
std::string readPreset(std::string_view name, Recipe& recipe);

}  // namespace orv::cli
