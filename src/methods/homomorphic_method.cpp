#include "methods/homomorphic_method.h"

#include <array>
#include <limits>
#include <utility>

#include "base/rounding.h"
#include "exports/work_window.h"
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

constexpr std::array<Parameter, 5> kParameters{
    choice("mode", 8, modeChoices, "what comes out"),
    real("gamma", "exponent", 1.8, 0.1, 100.0,
         "how much compress takes from the light: 1 nothing, 2 its root; below 1 darkens"),
    real("sigma", "pixels", 8.0, 0.5, 256.0,
         "width of the Gaussian that tells light from detail"),
    real("floor", "grey levels", 1.0, 0.001, 255.0,
         "darker samples count as this much: black has no logarithm"),
    real("scale", "factor", 1.0, 0.001, 1000.0, "multiplies the result"),
};

constexpr std::array<std::string_view, 1> kLiterature{
    "Oppenheim, Schafer, Stockham: Nonlinear filtering of multiplied and convolved signals, "
    "1968",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    HomomorphicOperator op(arguments.integer("mode"), arguments.real("gamma"));
    op.setSigma(arguments.real("sigma"));
    const float floor = toFloat(arguments.real("floor"));
    const double scale = arguments.real("scale");
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        const int count = static_cast<int>(source.size());
        for (int i = 0; i < count && !workCancelled(); ++i) {
            const WorkSlice slice(i, count);
            FloatImage& plane = *source[static_cast<std::size_t>(i)];
            plane.clamp(floor, std::numeric_limits<float>::max());
            op.runMirrored(plane, scale);
            reportWork(1, 1);
        }
        return source;
    });
}

}  // namespace

constinit const Method kHomomorphicMethod{
    "homomorphic", "Even out the light of a picture by filtering its logarithm", kParameters,
    kLiterature, run};

}  // namespace orv
