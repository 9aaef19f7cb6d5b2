#include "memory/job_memory.h"

#include <algorithm>
#include <cmath>

#include "methods/automatic.h"
#include "methods/memory_need.h"

namespace orv::cli {

namespace {

/// The program with its libraries, started.
constexpr double kProgramBytes = 26.0e6;
/// What decoders of whole pictures, WebP and progressive JPEG, hold beside the samples; bytes a
/// pixel and channel. They give 8 bits.
constexpr double kDecoderBytes = 2.5;
/// What comparing two pictures takes beside their samples, bytes a pixel.
constexpr double kComparisonBytes = 24.0;
/// Bytes of a sample of a plane.
constexpr double kFloat = 4.0;

double pixelsOf(const PictureSize& picture) {
    return static_cast<double>(picture.width) * picture.height;
}

double sampleBytes(const PictureSize& picture) {
    return pixelsOf(picture) * picture.channels * static_cast<double>(bytesOf(picture.depth));
}

/// The samples come in a block of the decoder and are copied; a turned picture is copied again.
double readingBytes(const PictureSize& picture) {
    const double decoder = picture.depth == SampleDepth::Bits8
                               ? kDecoderBytes * picture.channels * pixelsOf(picture)
                               : 0.0;
    return picture.fileBytes + decoder + (picture.turned ? 3.0 : 2.0) * sampleBytes(picture);
}

PictureSize scaledTo(const PictureSize& picture, int maxSide) {
    const int longer = std::max(picture.width, picture.height);
    if (maxSide <= 0 || maxSide >= longer) {
        return picture;
    }
    const double factor = static_cast<double>(maxSide) / longer;
    PictureSize scaled = picture;
    scaled.width = std::max(1, static_cast<int>(std::lround(picture.width * factor)));
    scaled.height = std::max(1, static_cast<int>(std::lround(picture.height * factor)));
    return scaled;
}

/// The arguments of a step, with those that automation would choose for strong noise.
Arguments argumentsOf(const Step& step, bool colour) {
    constexpr double kStrongNoise = 40.0;
    Arguments arguments = step.arguments;
    if (step.automatic && step.method->choose != nullptr) {
        step.method->choose(noiseOfStrength(step.strength.value_or(kStrongNoise), colour),
                            arguments);
    }
    return arguments;
}

/// The peak of a step with the planes that come in and go out.
double stepBytes(const Step& step, const PictureSize& picture, const PictureSize& second,
                 int planes) {
    double bytes = peakBytes(*step.method, argumentsOf(step, planes == 3),
                             {picture.width, picture.height, planes},
                             {second.width, second.height, second.colours});
    if (!step.method->secondPicture.empty()) {
        const double held = kFloat * planes * pixelsOf(picture);
        const double planesOfSecond = kFloat * second.channels * pixelsOf(second);
        bytes = std::max(
            {bytes, held + readingBytes(second), held + sampleBytes(second) + planesOfSecond});
    }
    return bytes;
}

}  // namespace

PictureSize sizeOf(const PictureHeader& header) {
    return {header.width, header.height,    header.channels,       header.colours,
            header.depth, header.fileBytes, header.orientation > 1};
}

double jobBytes(const std::vector<Step>& steps, const JobShape& shape) {
    const PictureSize& picture = shape.picture;
    const PictureSize worked = scaledTo(picture, shape.maxSide);
    const double pixels = pixelsOf(worked);
    const double samples = sampleBytes(worked);
    const double kept = shape.compared ? samples : 0.0;
    const bool withAlpha =
        picture.channels > picture.colours && shape.alpha == AlphaMode::Restore;
    int planes = picture.colours;
    double work = kFloat * picture.channels * pixels;
    for (const Step& step : steps) {
        work = std::max(work, stepBytes(step, worked, shape.second, planes));
        planes = step.method->secondPicture.empty() ? planes : 3;
    }
    work += withAlpha ? kFloat * pixels : 0.0;
    // Where number or depth of the channels change, the result stands beside the source.
    const double result =
        kFloat * planes * pixels + samples * (planes > picture.colours ? 3.0 : 1.0);
    const double scaling = pixels < pixelsOf(picture) ? sampleBytes(picture) : 0.0;
    const double comparing = shape.compared ? kComparisonBytes * pixels + samples : 0.0;
    return kProgramBytes +
           std::max({readingBytes(picture), scaling + 2.0 * samples, kept + samples + work,
                     kept + samples + result, kept + comparing});
}

double methodJobBytes(const Method& method, const PictureSize& picture) {
    Step step{&method, Arguments(method.parameters), {}};
    step.automatic = method.automatic;
    return jobBytes({step}, {picture, picture});
}

int largestSide(const std::vector<Step>& steps, const JobShape& shape, double limit) {
    const int longer = std::max(shape.picture.width, shape.picture.height);
    const auto fits = [&](int side) {
        JobShape scaled = shape;
        scaled.maxSide = side;
        return jobBytes(steps, scaled) <= limit;
    };
    int low = 0;
    int high = longer;
    while (low < high) {
        const int middle = low + (high - low + 1) / 2;
        if (fits(middle)) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return low;
}

}  // namespace orv::cli
