#include "methods/recolor_method.h"

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "base/rounding.h"
#include "methods/colour_planes.h"
#include "methods/plane_run.h"
#include "operators/colour/simple_color_transfer_operator.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 1> kParameters{
    real("strength", "share", 1.0, 0.0, 1.0,
         "how far the colours move: 1 takes over those of STYLE, 0 keeps those of SOURCE",
         "takes over more"),
};

constexpr std::array<std::string_view, 3> kNotes{
    "Pictures of like content suit each other best; their sizes don't matter.",
    "A grey SOURCE is tinted; two grey pictures match in brightness and contrast.",
    "Noise in a flat channel is stretched with the rest: smooth SOURCE first.",
};

constexpr std::array<std::string_view, 1> kLiterature{
    "Reinhard, Ashikhmin, Gooch, Shirley: Color transfer between images, 2001",
};

/// Mixes the source into the result, sample by sample.
void weaken(Planes& result, const Planes& source, float strength) {
    for (std::size_t c = 0; c < result.size(); ++c) {
        const float* const from = source[c % source.size()]->data();
        float* const to = result[c]->data();
        for (std::size_t i = 0; i < result[c]->sampleCount(); ++i) {
            to[i] = from[i] + strength * (to[i] - from[i]);
        }
    }
}

Planes copyOf(const Planes& planes) {
    Planes copy;
    for (const auto& plane : planes) {
        copy.push_back(plane->clone());
    }
    return copy;
}

Planes recoloured(Planes planes, Planes style, float strength) {
    SimpleColorTransferOperator op(std::make_unique<ColorSpaceChain>());
    const bool grey = planes.size() == 1 && style.size() == 1;
    {
        const WorkSlice learning(0, 2);
        op.setStylePlanes(*colourPlanes(std::move(style), 0.0f));
    }
    if (workCancelled()) {
        return {};
    }
    const WorkSlice running(1, 2);
    const Planes kept = strength < 1.0f ? copyOf(planes) : Planes();
    auto source = colourPlanes(std::move(planes), 0.0f);
    Planes result = planesOf(op.runPlanes(*source, nullptr));
    if (grey) {
        // Between two grey pictures no colour arises but by the rounding of the matrices, which
        // moves red least.
        result.resize(1);
    }
    if (!kept.empty()) {
        weaken(result, kept, strength);
    }
    return result;
}

MethodResult run(Planes planes, Planes style, const Arguments& arguments,
                 const Progress& progress) {
    std::string refusal = planesRefusal(style, "STYLE");
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    const float strength = toFloat(arguments.real("strength"));
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        return recoloured(std::move(source), std::move(style), strength);
    });
}

}  // namespace

constinit const Method kRecolorMethod{
    .name = "recolor",
    .summary = "Give a picture the colours of another one",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = nullptr,
    .picture = "SOURCE",
    .secondPicture = "STYLE",
    .runWithSecond = run,
    .notes = kNotes,
    .example = "orv recolor photo.jpg evening.jpg warm.jpg --strength 0.6",
};

}  // namespace orv
