#include "recipe/presets.h"

#include <vector>

#include "methods/suggestion.h"

namespace orv::cli {

std::string readPreset(std::string_view name, Recipe& recipe) {
    std::vector<std::string_view> names;
    std::string listed;
    for (const Preset& preset : presets()) {
        if (sameWord(preset.name, name)) {
            const std::string error = readRecipe(preset.text, recipe);
            return error.empty() ? error : "preset " + std::string(preset.name) + ": " + error;
        }
        names.push_back(preset.name);
        listed += (listed.empty() ? "" : ", ") + std::string(preset.name);
    }
    return "unknown preset '" + std::string(name) + "'" + didYouMean(name, names) +
           " (presets: " + listed + ")";
}

}  // namespace orv::cli
