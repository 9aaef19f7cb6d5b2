#include "methods/homomorphic_method.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <utility>

#include "base/rounding.h"
#include "exports/work_window.h"
#include "methods/blur_extension.h"
#include "methods/plane_run.h"
#include "operators/thin/homomorphic_operator.h"

namespace orv {

namespace {

constexpr std::array<Choice, 5> kModes{{
    {"compress", 8, "the picture under light compressed by gamma"},
    {"reflectance", 1, "sample / light, around 1; --scale 128 makes that mid-grey"},
    {"log-reflectance", 2, "its logarithm, around 0; a picture keeps what is above 0"},
    {"illumination", 4, "the light: a blur of the logarithms"},
    {"log-illumination", 5, "its logarithm, up to 5.5; --scale 46 spreads that to white"},
}};

std::span<const Choice> modeChoices() {
    return kModes;
}

constexpr std::array<Choice, 2> kExtensions{{
    {"mirror", ExtendByMirror, "by mirroring, which keeps borders free of stripes"},
    {"none", ExtendByNone, "not at all, as the C function does; noisy borders get stripes"},
}};

std::span<const Choice> extensionChoices() {
    return kExtensions;
}

constexpr std::array<Parameter, 6> kParameters{
    choice("mode", 8, modeChoices, "what comes out"),
    real("gamma", "exponent", 1.8, 0.1, 100.0,
         "how much compress takes from the light: 1 nothing, 2 its root; below 1 darkens",
         "lifts shadows more"),
    real("sigma", "pixels", 8.0, 0.5, 256.0,
         "width of the Gaussian that tells light from detail",
         "keeps more contrast in the dark, with wider halos"),
    choice("extend", ExtendByMirror, extensionChoices,
           "how the picture is extended beyond its borders"),
    real("floor", "grey levels", 1.0, 0.0, 255.0,
         "darker samples count as this much; 0 leaves them, but black has no logarithm",
         "lifts the darkest shadows less"),
    real("scale", "factor", 1.0, 0.001, 1000.0, "multiplies the result", "is brighter"),
};

constexpr std::array<std::string_view, 3> kNotes{
    "Noise in the shadows is lifted with them: run wavelet or denoise first.",
    "The channels are treated apart: colours grow paler, and smooth deep shadows may break "
    "into bands; --gamma 1.3 is milder.",
    "All modes but compress and illumination give numbers around 0 or 1, black in 8 bits "
    "without --scale.",
};

constexpr std::array<std::string_view, 1> kLiterature{
    "Oppenheim, Schafer, Stockham: Nonlinear filtering of multiplied and convolved signals, "
    "1968",
};

bool hasBlack(const Planes& planes) {
    return std::any_of(planes.begin(), planes.end(), [](const auto& plane) {
        return std::any_of(plane->data(), plane->data() + plane->sampleCount(),
                           [](float sample) { return sample <= 0.0f; });
    });
}

std::string refusalOf(const Planes& planes, const Arguments& arguments) {
    std::string refusal = planesRefusal(planes, "the picture");
    if (refusal.empty()) {
        refusal = blurExtensionRefusal(planes, arguments.integer("extend"));
    }
    if (refusal.empty() && !(arguments.real("floor") > 0.0) && hasBlack(planes)) {
        return "--floor: 0 takes samples above 0 alone, this picture has black ones";
    }
    return refusal;
}

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    std::string refusal = refusalOf(planes, arguments);
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    HomomorphicOperator op(arguments.integer("mode"), arguments.real("gamma"));
    op.setSigma(arguments.real("sigma"));
    const bool mirrored = arguments.integer("extend") == ExtendByMirror;
    const float floor = toFloat(arguments.real("floor"));
    const double scale = arguments.real("scale");
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        const int count = static_cast<int>(source.size());
        for (int i = 0; i < count && !workCancelled(); ++i) {
            const WorkSlice slice(i, count);
            FloatImage& plane = *source[static_cast<std::size_t>(i)];
            plane.clamp(floor, std::numeric_limits<float>::max());
            if (mirrored) {
                op.runMirrored(plane, scale);
            } else {
                op.runBare(plane, scale);
            }
            reportWork(1, 1);
        }
        return source;
    });
}

}  // namespace

constinit const Method kHomomorphicMethod{
    .name = "homomorphic",
    .summary = "Even out the light of a picture by filtering its logarithm",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv homomorphic dusk.jpg even.jpg --gamma 1.3",
};

}  // namespace orv
