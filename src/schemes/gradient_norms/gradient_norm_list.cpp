#include "schemes/gradient_norms/gradient_norm_list.h"

#include "schemes/gradient_norms/central_gradient_norm.h"
#include "schemes/gradient_norms/max_biased_slope_gradient_norm.h"
#include "schemes/gradient_norms/max_slope_gradient_norm.h"
#include "schemes/gradient_norms/min_biased_slope_gradient_norm.h"
#include "schemes/gradient_norms/min_slope_gradient_norm.h"
#include "schemes/gradient_norms/minmod_gradient_norm.h"

namespace orv {

GradientNormList::GradientNormList(int capacity)
    : capacity_(capacity > 0 ? capacity : 0),
      names_(std::make_unique<std::string[]>(static_cast<std::size_t>(capacity_))) {
    add("Central Gradient(s2) Norm (may diffuse)");
    add("Minmod Gradient(s2) Norm");
    add("Min Slope(s2)");
    add("Max Slope(s2)");
    add("Min Biased Slope(s2)");
    add("Max Biased Slope(s2)");
}

void GradientNormList::add(const char* name) {
    if (count_ < capacity_) {
        names_[static_cast<std::size_t>(count_++)] = name;
    }
}

std::unique_ptr<GradientNorm> GradientNormList::create(int flavour) const {
    switch (flavour) {
        case 0:
            return std::make_unique<CentralGradientNorm>();
        case 1:
            return std::make_unique<MinmodGradientNorm>();
        case 2:
            return std::make_unique<MinSlopeGradientNorm>();
        case 3:
            return std::make_unique<MaxSlopeGradientNorm>();
        case 4:
            return std::make_unique<MinBiasedSlopeGradientNorm>();
        case 5:
            return std::make_unique<MaxBiasedSlopeGradientNorm>();
        default:
            return nullptr;
    }
}

}  // namespace orv
