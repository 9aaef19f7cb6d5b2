#include "methods/recolor_method.h"

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "methods/colour_planes.h"
#include "methods/plane_run.h"
#include "operators/colour/simple_color_transfer_operator.h"

namespace orv {

namespace {

constexpr std::array<std::string_view, 1> kLiterature{
    "Reinhard, Ashikhmin, Gooch, Shirley: Color transfer between images, 2001",
};

Planes recoloured(Planes planes, Planes style) {
    SimpleColorTransferOperator op(std::make_unique<ColorSpaceChain>());
    const bool grey = planes.size() == 1 && style.size() == 1;
    {
        const WorkSlice learning(0, 2);
        op.setStylePlanes(*colourPlanes(std::move(style), 0.0f));
    }
    if (workCancelled()) {
        return {};
    }
    const WorkSlice running(1, 2);
    auto source = colourPlanes(std::move(planes), 0.0f);
    Planes result = planesOf(op.runPlanes(*source, nullptr));
    if (grey) {
        // Between two grey pictures no colour arises but by the rounding of the matrices, which
        // moves red least.
        result.resize(1);
    }
    return result;
}

MethodResult run(Planes planes, Planes style, const Arguments& /*arguments*/,
                 const Progress& progress) {
    std::string refusal = planesRefusal(style, "STYLE");
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        return recoloured(std::move(source), std::move(style));
    });
}

}  // namespace

constinit const Method kRecolorMethod{"recolor",
                                      "Give a picture the colours of another one",
                                      {},
                                      kLiterature,
                                      /*run=*/nullptr,
                                      /*picture=*/"SOURCE",
                                      /*secondPicture=*/"STYLE",
                                      run};

}  // namespace orv
