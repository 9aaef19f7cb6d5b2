#include "inspect/inspection.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "memory/job_memory.h"
#include "methods/method_catalogue.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

/// What decoding takes, or measuring the noise on planes and a copy of them.
double measuringBytes(const PictureSize& size) {
    const double planes = 4.0 * size.width * size.height * 2.0 * size.colours;
    return std::max(jobBytes({}, {size}), jobBytes({}, {}) + planes);
}

std::string measure(const PictureSource& source, Inspection& inspection) {
    Picture picture;
    std::string error = readPicture(source, picture);
    if (!error.empty()) {
        return error;
    }
    Planes planes = planesOf(picture.samples, picture.colours);
    picture = {};
    const Method& restore = *findMethod("restore");
    Arguments arguments(restore.parameters);
    inspection.choice = chooseAutomatically(restore, planes, std::nullopt, arguments);
    if (noiseOfEstimate(inspection.choice->noise).channel > 0.0) {
        inspection.suggestion =
            commandText("restore", {inspection.path}) + arguments.commandText();
    }
    return {};
}

}  // namespace

Inspection inspect(const std::string& path, std::optional<double> limit) {
    Inspection inspection;
    inspection.path = path;
    inspection.limit = limit;
    PictureSource source;
    inspection.error = openPicture(path, source, inspection.header);
    if (!inspection.error.empty()) {
        return inspection;
    }
    const PictureSize size = sizeOf(inspection.header);
    for (const Method* const method : methodCatalogue()) {
        const double bytes = methodJobBytes(*method, size);
        inspection.memory.push_back(
            {std::string(method->name), bytes, !limit || bytes <= *limit});
    }
    if (!limit || measuringBytes(size) <= *limit) {
        inspection.error = measure(source, inspection);
    }
    return inspection;
}

std::string_view orientationText(int orientation) {
    static constexpr std::array<std::string_view, 8> kTexts{
        "upright",
        "mirrored left to right",
        "turned by 180 degrees",
        "mirrored top to bottom",
        "mirrored and turned left by 90 degrees",
        "turned left by 90 degrees",
        "mirrored and turned right by 90 degrees",
        "turned right by 90 degrees"};
    const auto index = static_cast<std::size_t>(orientation - 1);
    return orientation >= 1 && index < kTexts.size() ? kTexts[index] : "unknown";
}

}  // namespace orv::cli
