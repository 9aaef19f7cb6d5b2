#include "pipeline/step_runner.h"

#include <cstddef>
#include <utility>

#include "methods/interleaved_planes.h"
#include "recipe/pixel_hash.h"

namespace orv::cli {

namespace {

Failure runStep(Step& step, Planes& planes, const Progress& progress) {
    const Method& method = *step.method;
    if (step.automatic) {
        step.choice = chooseAutomatically(method, planes, step.strength, step.arguments);
        step.automatic = false;
    }
    MethodResult result;
    if (method.secondPicture.empty()) {
        result = method.run(std::move(planes), step.arguments, progress);
    } else {
        Planes second;
        Failure failure = readSecond(step, second);
        if (failure) {
            return failure;
        }
        result = method.runWithSecond(std::move(planes), std::move(second), step.arguments,
                                      progress);
    }
    if (!result.error.empty()) {
        return {ExitCode::Refused, std::string(method.name) + ": " + result.error};
    }
    planes = std::move(result.planes);
    return {};
}

/// Runs all steps that take one picture, or all steps at all, as the part from `from` to `to`
/// of the work.
Failure runChain(std::vector<Step>& steps, bool all, double from, double to, Planes& planes,
                 ProgressBar& bar) {
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (!all && !steps[i].method->secondPicture.empty()) {
            continue;
        }
        const double share = (to - from) / static_cast<double>(steps.size());
        const double start = from + share * static_cast<double>(i);
        const Progress progress = [&](double done) {
            bar.update(start + share * done);
            return true;
        };
        Failure failure = runStep(steps[i], planes, progress);
        if (failure) {
            return failure;
        }
    }
    return {};
}

}  // namespace

Failure readSecond(Step& step, Planes& planes) {
    Picture picture;
    std::string error = readPicture(step.second, picture);
    if (!error.empty()) {
        return {ExitCode::Input, std::move(error)};
    }
    step.secondPixels = pixelHash(picture.samples);
    planes = planesOf(picture.samples, picture.colours);
    return {};
}

Failure runSteps(std::vector<Step>& steps, AlphaMode alpha, SampleDepth deepest,
                 Picture& picture, ProgressBar& bar) {
    const bool withAlpha = picture.alpha && alpha == AlphaMode::Restore;
    const double colourShare = withAlpha ? picture.colours / (picture.colours + 1.0) : 1.0;
    Planes planes = planesOf(picture.samples, picture.samples.channels);
    Planes transparency;
    if (withAlpha) {
        transparency.push_back(std::move(planes.back()));
    }
    planes.resize(static_cast<std::size_t>(picture.colours));
    bar.start();
    Failure failure = runChain(steps, /*all=*/true, 0.0, colourShare, planes, bar);
    if (!failure && withAlpha) {
        failure = runChain(steps, /*all=*/false, colourShare, 1.0, transparency, bar);
    }
    if (failure) {
        return failure;
    }

    if (deepest == SampleDepth::Bits8) {
        picture.samples = narrowed(std::move(picture.samples));
    }
    if (planes.size() == 3 && picture.colours == 1) {
        picture.samples = coloured(picture.samples);
        picture.colours = 3;
    }
    for (auto& plane : transparency) {
        planes.push_back(std::move(plane));
    }
    storePlanes(planes, picture.samples);
    return {};
}

}  // namespace orv::cli
