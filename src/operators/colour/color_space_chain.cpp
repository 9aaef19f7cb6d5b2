#include "operators/colour/color_space_chain.h"

#include <utility>

namespace orv {

std::unique_ptr<RealImage3> ColorSpaceChain::forward(const RealImage3& planes,
                                                     std::unique_ptr<RealImage3> target) const {
    const std::unique_ptr<RealImage3> between = first_.forward(planes, nullptr);
    return second_.forward(*between, std::move(target));
}

std::unique_ptr<RealImage3> ColorSpaceChain::inverse(const RealImage3& planes,
                                                     std::unique_ptr<RealImage3> target) const {
    const std::unique_ptr<RealImage3> between = second_.inverse(planes, nullptr);
    return first_.inverse(*between, std::move(target));
}

void ColorSpaceChain::forwardSamples(const double* const* in, double* const* out,
                                     std::size_t n) const {
    first_.forwardSamples(in, out, n);
    second_.forwardSamples(out, out, n);
}

void ColorSpaceChain::inverseSamples(const double* const* in, double* const* out,
                                     std::size_t n) const {
    second_.inverseSamples(in, out, n);
    first_.inverseSamples(out, out, n);
}

}  // namespace orv
