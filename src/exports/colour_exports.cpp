#include "exports/call_frame.h"
#include "exports/progress_window.h"
#include "operators/colour/color_space_chain.h"
#include "operators/colour/color_to_grey_transfer_operator.h"
#include "operators/colour/simple_color_transfer_operator.h"

namespace orv {

namespace {

/// Swatches keep their own side's distance from all four borders.
constexpr int kSmallestColourSide = 2 * ColorToGreyTransferOperator::kSwatchSize + 1;

bool holdsSwatches(const DiscreteImage* image) {
    return image != nullptr && image->width() >= kSmallestColourSide &&
           image->height() >= kSmallestColourSide;
}

}  // namespace

}  // namespace orv

extern "C" {

void* ORVISimpleColorTranfer(void* source, void* style) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* picture = orv::imageOf(source);
        const orv::RgbDiscreteImage* model = orv::imageOf(style);
        if (picture == nullptr || model == nullptr) {
            return nullptr;
        }
        orv::reportProgress(0);
        orv::SimpleColorTransferOperator transfer(std::make_unique<orv::ColorSpaceChain>());
        transfer.setStyle(*model);
        orv::reportProgress(20);
        return transfer.apply(*picture, nullptr);
    });
}

void* ORVIColorToGreyTranfertOp(void* grey, void* colour) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* picture = orv::imageOf(grey);
        const orv::RgbDiscreteImage* model = orv::imageOf(colour);
        if (picture == nullptr || !orv::holdsSwatches(model)) {
            return nullptr;
        }
        orv::ColorToGreyTransferOperator transfer(std::make_unique<orv::ColorSpaceChain>());
        transfer.learnSwatches(*model);
        return transfer.apply(*picture, nullptr);
    });
}

}  // extern "C"
