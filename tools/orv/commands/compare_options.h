#pragma once

#include "options/verb.h"

namespace orv::cli {

/// `orv compare`.
Verb compareVerb();

}  // namespace orv::cli
