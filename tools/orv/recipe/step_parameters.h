#pragma once

#include <string_view>
#include <vector>

#include "methods/method.h"

namespace orv::cli {

/// The parameter that a step of this method may have, or null.
///
/// Beside those of the method these are `strength` and `auto`, where the method can choose its
/// parameters by itself.
const Parameter* stepParameter(const Method& method, std::string_view name);

/// The names of all of them.
std::vector<std::string_view> stepParameterNames(const Method& method);

/// Whether the name is `strength` or `auto` of a method that can choose its parameters.
bool isAutomation(const Method& method, std::string_view name);

}  // namespace orv::cli
