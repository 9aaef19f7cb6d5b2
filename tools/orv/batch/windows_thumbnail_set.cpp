#include "batch/thumbnail.h"
#include "batch/thumbnail_set.h"

namespace orv::cli {

namespace {

constexpr int kSide = 240;

}  // namespace

// Each result was decoded by a process of its own before. Without fork() a process for its preview
// would cost more than the preview.
std::map<std::size_t, ThumbnailPair> makeThumbnails(const BatchPlan& plan,
                                                    const std::vector<std::size_t>& files,
                                                    int /*jobs*/, const StopSignal& stop) {
    std::map<std::size_t, ThumbnailPair> pairs;
    for (const std::size_t file : files) {
        if (stop.received() != 0) {
            break;
        }
        ThumbnailPair& pair = pairs[file];
        makeThumbnail(plan.files[file].input, kSide, pair.before);
        makeThumbnail(plan.files[file].output, kSide, pair.after);
    }
    return pairs;
}

}  // namespace orv::cli
