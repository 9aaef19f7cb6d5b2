#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "batch/batch_plan.h"
#include "batch/stop_signal.h"

namespace orv::cli {

/// The most pictures of a page with thumbnails; those that follow have links alone.
inline constexpr std::size_t kMostThumbnails = 500;

/// The page with places for its parts; made by the build.
std::string_view batchReportTemplate();

/// Why the page can't be written, as one line; empty when it can or none is asked for.
std::string reportRefusal(const BatchOrder& order);

/// Writes one page about a batch: what failed and why, and every result with its time, size and
/// thumbnails before and after. Pictures are linked to from the page's own place.
///
/// Fails:   with one line; an empty text means success.
std::string writeBatchReport(const BatchOrder& order, const BatchPlan& plan, double seconds,
                             const StopSignal& stop);

/// A text as it stands in a page, between tags or in quotes.
std::string htmlText(std::string_view text);

/// A path as it stands in a link.
std::string linkText(std::string_view path);

}  // namespace orv::cli
