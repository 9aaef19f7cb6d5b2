#pragma once

#include <string>

#include "options/verb.h"

namespace orv::cli {

/// What `orv --help` prints.
std::string generalHelp();

/// What `orv VERB --help` prints.
std::string verbHelp(const Verb& verb);

/// What `orv --version` prints.
std::string versionText();

}  // namespace orv::cli
