#include "schemes/kernels/diffusivity_plane.h"

#include <algorithm>

#include "schemes/kernels/diffusivity_kernels.h"

namespace orv {

namespace {

// The formula's place in the table.
int formulaOf(FlowKind kind) {
    switch (kind) {
        case FlowKind::Variational:
            return 1;
        case FlowKind::TotalVariation:
            return 2;
        case FlowKind::Weickert2:
            return 3;
        case FlowKind::Weickert3:
            return 4;
        case FlowKind::Weickert4:
            return 5;
        case FlowKind::PeronaMalik:
            break;
    }
    return 0;
}

}  // namespace

void fillDiffusivity(const FloatImage& plane, int flavour, FlowKind kind, float contrastSquared,
                     FloatImage& target) {
    const DiffusivityKernels::Column column =
        diffusivityKernels().columns[flavour][formulaOf(kind)];
    const int lastX = plane.width() - 1;
    const int lastY = plane.height() - 1;
    for (int x = 0; x <= lastX; ++x) {
        float* out = target.row(x);
        if (x == 0 || x == lastX || lastY < 2) {
            std::fill_n(out, plane.height(), 0.0f);
            continue;
        }
        const ColumnStencil stencil = {plane.row(x - 1) + 1, plane.row(x) + 1,
                                       plane.row(x + 1) + 1};
        out[0] = 0.0f;
        out[lastY] = 0.0f;
        column(stencil, lastY - 1, contrastSquared, out + 1);
    }
}

}  // namespace orv
