#include "methods/susan_method.h"

#include <array>
#include <utility>

#include "methods/plane_run.h"
#include "operators/susan/susan_restoration_operator.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 3> kParameters{
    real("threshold", "grey levels", 30.0, 0.5, 1000.0,
         "neighbours that differ by this count for little; take 1.5 times the noise",
         "smooths across stronger edges"),
    real("sigma", "pixels", 1.5, 0.3, 50.0,
         "how fast neighbours count less with their distance; from 4 on nearly all alike",
         "smooths more"),
    integer("passes", "passes", 2, 1, 100, "runs, each on the result of the one before",
            "smooths more"),
};

constexpr std::array<std::string_view, 2> kNotes{
    "Take a threshold of 1.5 to 2 times the noise with 2 passes, of 3 to 4 times with 1.",
    "With a threshold below 9, lone pixels that differ by more than 27 thresholds turn black.",
};

constexpr std::array<std::string_view, 1> kLiterature{
    "Smith, Brady: SUSAN: a new approach to low level image processing, 1997",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    SusanRestorationOperator op(arguments.integer("passes"), arguments.real("threshold"),
                                arguments.real("sigma"));
    return runFloatOperator(std::move(planes), progress, op);
}

}  // namespace

constinit const Method kSusanMethod{
    .name = "susan",
    .summary = "Smooth noise and specks by means over neighbours of like brightness",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv susan noisy.jpg smooth.jpg --threshold 15",
};

}  // namespace orv
