#include "methods/retinex_method.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "methods/plane_run.h"
#include "operators/thin/retinex_operator.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 4> kParameters{
    real("gamma", "", 2.0, 0.1, 100.0,
         "how much of the illumination is taken away: 1 nothing, 2 its root, 100 nearly all",
         "brightens the dark more"),
    real("alpha", "", 0.0001, 0.0, 1.0,
         "lifts the illumination off the picture; from about 0.03 on the result darkens",
         "brightens less"),
    real("beta", "", 0.1, 0.0, 2.0,
         "lets the illumination follow edges; halos from about 0.5 on, noise above 1",
         "makes halos narrower and deeper"),
    integer("levels", "levels", 0, 0, 20,
            "sizes of the picture at which the light is sought, each half of the one before; "
            "0 takes two less than fit",
            "brightens more"),
};

constexpr std::array<std::string_view, 3> kNotes{
    "Noise and JPEG blocks in the dark grow brighter with the rest: run denoise first.",
    "Hardly anything happens to a picture that uses the whole range everywhere.",
    "A cast fades, since each channel loses its own light.",
};

constexpr std::array<std::string_view, 2> kLiterature{
    "Kimmel, Elad, Shaked, Keshet, Sobel: A variational framework for Retinex, 2003",
    "Land, McCann: Lightness and Retinex theory, 1971",
};

int mostLevels(const FloatImage& plane) {
    return RetinexOperator::mostLevels(plane.width(), plane.height());
}

/// The number of levels to run. By themselves they end where the shorter side is 4 to 7 samples:
/// with fewer the light has too few passes to settle, with more it washes the colours out.
int levelsFor(int wanted, const FloatImage& plane) {
    return wanted > 0 ? wanted : std::max(mostLevels(plane) - 2, 1);
}

std::string levelsRefusal(int levels, const FloatImage& plane) {
    const int most = mostLevels(plane);
    if (levels <= most) {
        return {};
    }
    const std::string size =
        std::to_string(plane.width()) + " x " + std::to_string(plane.height());
    const std::string range = most == 1 ? "1 alone" : "1 to " + std::to_string(most);
    return "--levels: " + std::to_string(levels) + " is too many for " + size +
           " pixels, which allow " + range;
}

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    std::string refusal = planesRefusal(planes, "the picture");
    if (refusal.empty()) {
        refusal = levelsRefusal(arguments.integer("levels"), *planes[0]);
    }
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    RetinexOperator op(arguments.real("gamma"), arguments.real("alpha"), arguments.real("beta"),
                       levelsFor(arguments.integer("levels"), *planes[0]));
    return runRealOperator(std::move(planes), progress, op);
}

}  // namespace

constinit const Method kRetinexMethod{
    .name = "retinex",
    .summary = "Brighten what lies in the dark by dividing the light out of a picture",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv retinex night.jpg bright.jpg --gamma 1.5",
};

}  // namespace orv
