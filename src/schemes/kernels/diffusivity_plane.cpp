#include "schemes/kernels/diffusivity_plane.h"

#include <algorithm>

#include "base/rounding.h"
#include "schemes/kernels/diffusivity_kernels.h"

namespace orv {

namespace {

// The formula's place in the table; -1 for the exponentials, which stay scalar.
int formulaOf(FlowKind kind) {
    switch (kind) {
        case FlowKind::Variational:
            return 1;
        case FlowKind::TotalVariation:
            return 2;
        case FlowKind::Weickert2:
        case FlowKind::Weickert3:
        case FlowKind::Weickert4:
            return -1;
        case FlowKind::PeronaMalik:
            break;
    }
    return 0;
}

void scalarColumn(const ColumnStencil& stencil, int count, FlowKind kind,
                  DiffusivityKernels::NormColumn norms, float contrastSquared, float* out) {
    constexpr int kChunk = 256;
    double n[kChunk];
    for (int y = 0; y < count; y += kChunk) {
        const int size = std::min(kChunk, count - y);
        norms({stencil.west + y, stencil.here + y, stencil.east + y}, size, n);
        for (int i = 0; i < size; ++i) {
            const double g = n[i] <= 0.0 ? 1.0 : diffusivity(kind, n[i] / contrastSquared);
            out[y + i] = toFloat(g);
        }
    }
}

}  // namespace

void fillDiffusivity(const FloatImage& plane, int flavour, FlowKind kind, float contrastSquared,
                     FloatImage& target) {
    const DiffusivityKernels& kernels = diffusivityKernels();
    const int formula = formulaOf(kind);
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
        if (formula < 0) {
            scalarColumn(stencil, lastY - 1, kind, kernels.norms[flavour], contrastSquared,
                         out + 1);
        } else {
            kernels.columns[flavour][formula](stencil, lastY - 1, contrastSquared, out + 1);
        }
    }
}

}  // namespace orv
