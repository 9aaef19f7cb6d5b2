#include "schemes/flows/diffusivity.h"

#include <cmath>

#include "base/elementary.h"

namespace orv {

double diffusivity(FlowKind kind, double s) {
    switch (kind) {
        case FlowKind::Variational:
            return 1.0 / std::sqrt(1.0 + s);
        case FlowKind::TotalVariation:
            return 1.0 / std::sqrt(s + 0.0001);
        case FlowKind::Weickert2:
            return elementaryOneMinusExp(-2.33666 / (s * s));
        case FlowKind::Weickert3:
            return elementaryOneMinusExp(-2.9183 / (s * s * s));
        case FlowKind::Weickert4:
            return elementaryOneMinusExp(-3.31488 / (s * s * s * s));
        case FlowKind::PeronaMalik:
            break;
    }
    return 1.0 / (1.0 + s);
}

}  // namespace orv
