#include "pipeline/job_target.h"

#include <utility>

#include "system/file_system.h"
#include "terminal/messages.h"

namespace orv::cli {

JobTarget::JobTarget(const JobFiles& files, const JobOptions& options)
    : files_(files), options_(options) {}

Failure JobTarget::choose(const PictureHeader& header) {
    settings_.quality = options_.quality;
    settings_.strip = options_.strip;
    if (!options_.format.empty()) {
        settings_.format = formatOfWord(options_.format);
        settings_.ending = "." + options_.format;
    } else if (toStream()) {
        settings_.format = formatEntry(header.format);
        settings_.ending = header.colours == 1 ? ".pgm" : ".ppm";
    } else {
        settings_.format = formatOfName(files_.output);
        settings_.ending = endingOfName(files_.output);
    }
    if (settings_.format == nullptr) {
        return {ExitCode::Output, endingRefusal(files_.output, "format", writableExtensions())};
    }
    return {};
}

Failure JobTarget::open() {
    std::string error =
        toStream() ? standardOutputRefusal() : file_.open(files_.output, options_.force);
    return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
}

Failure JobTarget::check(Picture& picture) const {
    std::string error = writeRefusal(name(), settings_, picture);
    if (!error.empty()) {
        return {ExitCode::Output, std::move(error)};
    }
    if (picture.samples.depth == SampleDepth::Bits16 &&
        settings_.format->deepest == SampleDepth::Bits8) {
        picture.warnings.push_back(name() + ": " + std::string(settings_.format->name) +
                                   " holds 8 bits a sample; the picture's 16 are rounded");
    }
    return {};
}

Failure JobTarget::write(Picture& picture) {
    const std::string error = toStream()
                                  ? encodePicture(settings_, picture, bytes_)
                                  : writePicture(file_.temporaryPath(), settings_, picture);
    return error.empty() ? Failure{}
                         : Failure{ExitCode::Output, name() + ": can't be written: " + error};
}

Failure JobTarget::commit() {
    std::string error = toStream() ? writeStandardOutput(bytes_) : file_.commit();
    return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
}

std::string JobTarget::resultLine(const Picture& picture, double seconds) const {
    return files_.output + ": " + pictureKind(picture) + ", " +
           sizeText(fileBytes(files_.output)) + ", in " + durationText(seconds) + "\n";
}

}  // namespace orv::cli
