#include "operators/diffusion/flow_table.h"

namespace orv {

FlowKind flowKindOf(int flow) {
    switch (flow) {
        case kFlowWeickert:
        case kFlowWeickert4:
            return FlowKind::Weickert4;
        case kFlowWeickert2:
            return FlowKind::Weickert2;
        case kFlowWeickert3:
            return FlowKind::Weickert3;
        case kFlowVariational:
            return FlowKind::Variational;
        case kFlowTotalVariation:
            return FlowKind::TotalVariation;
        default:
            return FlowKind::PeronaMalik;
    }
}

}  // namespace orv
