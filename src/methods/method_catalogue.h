#pragma once

#include <span>
#include <string>
#include <string_view>

#include "methods/method.h"

namespace orv {

/// All methods, in the order in which clients list them.
std::span<const Method* const> methodCatalogue();

/// The method of a name, or null.
const Method* findMethod(std::string_view name);

/// The whole catalogue as JSON text: an array of methods with their parameters, choices and
/// literature, indented by two spaces, with a line break at the end.
std::string catalogueAsJson();

}  // namespace orv
