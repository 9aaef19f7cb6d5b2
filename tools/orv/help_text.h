#pragma once

#include <string>
#include <string_view>

#include "methods/method.h"

namespace orv::cli {

/// What `orv --help` prints.
std::string generalHelp();

/// What `orv VERB --help` prints for a method, from its description.
std::string methodHelp(const Method& method);

/// The help of a verb, or an empty text when there is no such verb.
std::string verbHelp(std::string_view verb);

/// What `orv solve --help` prints.
std::string solveHelp();

/// What `orv methods --help` prints.
std::string methodsHelp();

/// What `orv solvers --help` prints.
std::string solversHelp();

/// What `orv --version` prints.
std::string versionText();

}  // namespace orv::cli
