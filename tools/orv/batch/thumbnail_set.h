#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "batch/batch_plan.h"
#include "batch/stop_signal.h"

namespace orv::cli {

/// Small JPEGs of a picture before and after; empty where there is none.
struct ThumbnailPair {
    std::vector<unsigned char> before;
    std::vector<unsigned char> after;
};

/// Makes thumbnails of pictures and their results, in processes of their own: should one crash
/// over a file, the others stay. On Windows this process makes them.
///
/// Shapes:  `files` are numbers of pictures of the plan.
/// Stops:   when a signal comes.
std::map<std::size_t, ThumbnailPair> makeThumbnails(const BatchPlan& plan,
                                                    const std::vector<std::size_t>& files,
                                                    int jobs, const StopSignal& stop);

}  // namespace orv::cli
