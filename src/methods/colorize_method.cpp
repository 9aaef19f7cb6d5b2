#include "methods/colorize_method.h"

#include <array>
#include <memory>
#include <utility>

#include "base/rounding.h"
#include "base/runtime_random.h"
#include "methods/colour_planes.h"
#include "methods/plane_run.h"
#include "operators/colour/color_to_grey_transfer_operator.h"

namespace orv {

namespace {

/// A swatch has to lie its own side away from every border.
constexpr int kLeastSide = 2 * ColorToGreyTransferOperator::kSwatchSize + 1;

constexpr std::array<Parameter, 2> kParameters{
    integer("seed", "number", 1, 0, 999999,
            "start of the generator that places the swatches; others give other colours",
            "is another draw, neither more nor less"),
    real("floor", "grey levels", 1.0, 0.0, 255.0,
         "darker samples of both pictures count as this; with 0, black pixels spoil colours",
         "takes more shadows for alike"),
};

constexpr std::array<std::string_view, 3> kNotes{
    "Brightness and texture alone tell the colour: take as COLOUR a crop of one material.",
    "Smooth areas may get dots and contour lines of colour; another --seed draws others.",
    "COLOUR needs three channels and at least 11 x 11 pixels.",
};

constexpr std::array<std::string_view, 1> kLiterature{
    "Welsh, Ashikhmin, Mueller: Transferring color to greyscale images, 2002",
};

/// Starts this thread's generator afresh and sets it back at the end, so that a run neither
/// depends on what was drawn before nor changes what is drawn later.
class FreshRandom {
  public:
    explicit FreshRandom(unsigned seed) : saved_(runtimeRandomState()) {
        seedRuntimeRandom(seed);
    }
    ~FreshRandom() { seedRuntimeRandom(saved_); }
    FreshRandom(const FreshRandom&) = delete;
    FreshRandom& operator=(const FreshRandom&) = delete;

  private:
    unsigned saved_;
};

std::string refusalOf(const Planes& colour) {
    std::string refusal = planesRefusal(colour, "COLOUR");
    if (!refusal.empty()) {
        return refusal;
    }
    if (colour.size() != 3) {
        return "COLOUR is a grey picture; colours have to come from a picture with 3 channels";
    }
    const int width = colour[0]->width();
    const int height = colour[0]->height();
    if (width < kLeastSide || height < kLeastSide) {
        return "COLOUR has " + std::to_string(width) + " x " + std::to_string(height) +
               " pixels; it needs at least " + std::to_string(kLeastSide) + " x " +
               std::to_string(kLeastSide);
    }
    return {};
}

Planes colourised(Planes grey, Planes colour, unsigned seed, float floor) {
    ColorToGreyTransferOperator op(std::make_unique<ColorSpaceChain>());
    {
        const WorkSlice learning(0, 2);
        const FreshRandom random(seed);
        op.learnSwatchPlanes(*colourPlanes(std::move(colour), floor));
    }
    if (workCancelled()) {
        return {};
    }
    const WorkSlice running(1, 2);
    return planesOf(op.runPlanes(colourPlanes(std::move(grey), floor)));
}

MethodResult run(Planes grey, Planes colour, const Arguments& arguments,
                 const Progress& progress) {
    std::string refusal = refusalOf(colour);
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    const unsigned seed = static_cast<unsigned>(arguments.integer("seed"));
    const float floor = toFloat(arguments.real("floor"));
    return runPlaneWork(std::move(grey), progress, [&](Planes source) {
        return colourised(std::move(source), std::move(colour), seed, floor);
    });
}

}  // namespace

constinit const Method kColorizeMethod{
    .name = "colorize",
    .summary = "Give a grey picture the colours of another picture, place by place",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = nullptr,
    .picture = "GREY",
    .secondPicture = "COLOUR",
    .runWithSecond = run,
    .notes = kNotes,
    .example = "orv colorize grey.jpg fur.jpg colour.jpg --seed 7",
};

}  // namespace orv
