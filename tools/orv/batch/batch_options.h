#pragma once

#include <string_view>

#include "options/option.h"

namespace orv::cli {

/// What a batch takes beside the options of its verb.
extern const OptionGroup kBatchOptions;

/// Whether a file name is that of a page.
bool endsInHtml(std::string_view path);

}  // namespace orv::cli
