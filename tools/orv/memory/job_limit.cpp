#include "memory/job_limit.h"

#include <optional>
#include <utility>

#include "memory/memory_limit.h"

namespace orv::cli {

namespace {

double pixelsOf(const PictureSize& size) {
    return static_cast<double>(size.width) * size.height;
}

/// The largest of the second pictures.
PictureSize largestSecond(const std::vector<Step>& steps) {
    PictureSize largest;
    for (const Step& step : steps) {
        PictureSource source;
        PictureHeader header;
        if (!step.method->secondPicture.empty() && openSource(step.second, source).empty() &&
            readHeader(source, header).empty() &&
            pixelsOf(sizeOf(header)) > pixelsOf(largest)) {
            largest = sizeOf(header);
        }
    }
    return largest;
}

}  // namespace

Failure memoryFailure(const std::string& name, const PictureHeader& header,
                      const std::vector<Step>& steps, const JobOptions& options) {
    std::optional<double> limit;
    std::string error = readMemorySize(options.memory, availableMemory(), limit);
    if (!error.empty()) {
        return {ExitCode::Usage, std::move(error)};
    }
    const JobShape shape{sizeOf(header), largestSecond(steps), options.alpha, options.maxSide,
                         !options.comparison.empty()};
    error = memoryRefusal(name, steps, shape, limit);
    return error.empty() ? Failure{} : Failure{ExitCode::Memory, std::move(error)};
}

}  // namespace orv::cli
