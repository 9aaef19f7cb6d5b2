#pragma once

#include <string>

#include "recipe/json_value.h"
#include "recipe/recipe.h"

namespace orv::cli {

/// Reads one step of a recipe and checks it by the catalogue of the methods.
///
/// Fails:   with one line that begins with the place; an empty text means success.
std::string readStep(const std::string& place, const JsonValue& object, RecipeStep& step);

}  // namespace orv::cli
