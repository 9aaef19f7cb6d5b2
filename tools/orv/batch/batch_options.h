#pragma once

#include <string_view>

#include "options/option.h"

namespace orv::cli {

/// What a batch takes beside the options of its verb.
extern const OptionGroup kBatchOptions;

/// Where results go, as the help of a batch tells it; the verbs have these options themselves.
extern const OptionGroup kBatchTargetOptions;

/// Whether a file name is that of a page.
bool endsInHtml(std::string_view path);

}  // namespace orv::cli
