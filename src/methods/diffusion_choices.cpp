#include "methods/diffusion_choices.h"

#include <array>

#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr std::array<Choice, 7> kSchemes{{
    {"LOD", kSchemeLod, "locally one-dimensional: along x, then along y"},
    {"AFI", kSchemeAfi, "mean of x before y and y before x"},
    {"ADI", kSchemeAdi, "alternating directions, Peaceman-Rachford"},
    {"AOS", kSchemeAos, "additive operator splitting: mean of x and y alone"},
    {"AMOS", kSchemeAmos, "additive-multiplicative splitting, Crank-Nicolson lines"},
    {"2DSemi", kScheme2DSemi,
     "unsplit and semi-implicit; with Thomas minutes for 0.25 megapixels"},
    {"2DImplicit", kScheme2DImplicit,
     "unsplit, half explicit; with Thomas minutes for 0.25 megapixels"},
}};

constexpr std::array<Choice, 7> kFlows{{
    {"PM", kFlowPeronaMalik, "Perona-Malik, 1 / (1 + s)"},
    {"WE", kFlowWeickert, "Weickert, the same as WE4"},
    {"WE2", kFlowWeickert2, "Weickert, 1 - exp(-2.33666 / s^2)"},
    {"WE3", kFlowWeickert3, "Weickert, 1 - exp(-2.9183 / s^3)"},
    {"WE4", kFlowWeickert4, "Weickert, 1 - exp(-3.31488 / s^4)"},
    {"VAR", kFlowVariational, "variational, 1 / sqrt(1 + s)"},
    {"TV", kFlowTotalVariation, "total variation, 1 / sqrt(s + 0.0001)"},
}};

constexpr std::array<Choice, 6> kGradientNorms{{
    {"central", 0, "central differences"},
    {"minmod", 1, "the smaller of the two one-sided differences"},
    {"min-slope", 2, "smallest slope to a neighbour"},
    {"max-slope", 3, "largest slope to a neighbour"},
    {"min-biased", 4, "smallest slope with the next one"},
    {"max-biased", 5, "largest slope with the next one"},
}};

}  // namespace

std::span<const Choice> schemeChoices() {
    return kSchemes;
}

std::span<const Choice> flowChoices() {
    return kFlows;
}

std::span<const Choice> gradientNormChoices() {
    return kGradientNorms;
}

}  // namespace orv
