#pragma once

#include <string>

#include "options/verb.h"

namespace orv::cli {

/// "-o, --output OUT", "--strip[=WHAT]".
std::string writtenOption(const Option& option);

/// "--tau PIXELS^2".
std::string writtenParameter(const Parameter& parameter);

/// What a parameter does, takes and has by default, and what a larger value does; `choices`
/// tells whether the names to choose from are listed, where there are few.
std::string toldParameter(const Verb& verb, const Parameter& parameter, bool choices);

/// Whether the names of a choice are few enough to be listed.
bool listsChoices(const Parameter& parameter);

/// "restore IN... [OUT]".
std::string writtenVerb(const Verb& verb);

/// The command that shows the verb, or an empty text.
std::string exampleOf(const Verb& verb);

}  // namespace orv::cli
