#include "methods/susan_method.h"

#include <array>
#include <utility>

#include "methods/plane_run.h"
#include "operators/susan/susan_restoration_operator.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 3> kParameters{
    real("threshold", "grey levels", 30.0, 0.5, 1000.0,
         "neighbours that differ by this count for little; take 1.5 times the noise"),
    real("sigma", "pixels", 1.5, 0.3, 50.0,
         "how fast neighbours count less with their distance; from 4 on nearly all alike"),
    integer("passes", "passes", 2, 1, 100, "runs, each on the result of the one before"),
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
    "susan", "Smooth noise and specks by means over neighbours of like brightness", kParameters,
    kLiterature, run};

}  // namespace orv
