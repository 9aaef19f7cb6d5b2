#pragma once

#include "options/verb.h"

namespace orv::cli {

/// `orv tune VERB IN --PARAMETER VALUES [-o SHEET]`.
Verb tuneVerb();

}  // namespace orv::cli
