#pragma once

#include "options/verb.h"

namespace orv::cli {

/// `orv inspect IN... [--json]`.
Verb inspectVerb();

}  // namespace orv::cli
