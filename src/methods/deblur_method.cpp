#include "methods/deblur_method.h"

#include <array>
#include <string>
#include <utility>

#include "methods/plane_run.h"
#include "operators/thin/barash_aos_operator.h"

namespace orv {

namespace {

// Its lines read the sixth sample.
constexpr int kLeastSide = 6;

constexpr std::array<Choice, 4> kKernels{{
    {"121", 3, "1 2 1, a blur of 0.7 pixels"},
    {"12921", 2, "1 2 9 2 1, a blur of 0.9 pixels with a sharp middle"},
    {"13431", 5, "1 3 4 3 1, a blur of 1.1 pixels"},
    {"1356531", 7, "1 3 5 6 5 3 1, a blur of 1.5 pixels"},
}};

std::span<const Choice> kernelChoices() {
    return kKernels;
}

constexpr std::array<Choice, 2> kObserved{{
    {"yes", 1, "the blur of the picture is compared with the picture itself; sharpens most"},
    {"no", 0, "it is compared with the picture blurred once; sharpens broader details alone"},
}};

std::span<const Choice> observedChoices() {
    return kObserved;
}

constexpr std::array<Parameter, 5> kParameters{
    choice("kernel", 5, kernelChoices, "weights of the blur that is taken off, on both axes"),
    integer("iterations", "iterations", 1, 1, 100,
            "each one more widens the blur that is taken off by two passes of the kernel",
            "takes a wider blur off"),
    real("tau", "pixels^2", 0.01, 0.0, 10.0, "smoothing on top; above 0.05 it shows",
         "sharpens more, and smooths more on top"),
    real("lambda", "1/pixels^2", 150.0, 0.0, 1000000.0,
         "lambda times tau is the strength of sharpening; 1 to 1.5 suits", "sharpens more"),
    rare(choice("keep-observed", 1, observedChoices,
                "what the blurred picture is compared with")),
};

constexpr std::array<std::string_view, 3> kNotes{
    "Noise is sharpened with the rest: smooth it first, or take shock.",
    "A blur much wider than the kernel, above some 2 pixels, can't be taken off.",
    "The strength is lambda times tau: with a larger tau take a smaller lambda.",
};

constexpr std::array<std::string_view, 2> kLiterature{
    "Rudin, Osher: Total variation based image restoration with free local constraints, 1994",
    "Weickert, ter Haar Romeny, Viergever: Efficient and reliable schemes for nonlinear "
    "diffusion filtering, 1998",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    for (const auto& plane : planes) {
        if (plane != nullptr && (plane->width() < kLeastSide || plane->height() < kLeastSide)) {
            return failure("needs a picture of at least 6 x 6 pixels, not " +
                           std::to_string(plane->width()) + " x " +
                           std::to_string(plane->height()));
        }
    }
    BarashAosOperator deblurring(arguments.integer("iterations"), arguments.integer("kernel"),
                                 arguments.real("tau"), arguments.real("lambda"),
                                 /*sigma=*/1.0, /*edgeContrast=*/1.0,
                                 /*keepObserved=*/arguments.integer("keep-observed") != 0);
    return runFloatOperator(std::move(planes), progress, deblurring);
}

}  // namespace

constinit const Method kDeblurMethod{
    .name = "deblur",
    .summary = "Sharpen a slightly blurred picture by taking off what a known blur adds",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv deblur soft.jpg sharp.jpg --kernel 12921",
};

}  // namespace orv
