#include "exports/call_frame.h"
#include "operators/shock/shock_operator.h"
#include "operators/susan/susan_restoration_operator.h"
#include "operators/thin/homomorphic_operator.h"
#include "operators/thin/retinex_operator.h"
#include "operators/thin/van_vliet_blur_operator.h"
#include "orv/orv_constants.h"

namespace orv {

namespace {

/// The blur of an illumination is that of a picture: both need the same sides.
bool canBlur(const DiscreteImage* image) {
    return image != nullptr && HomomorphicOperator::accepts(image->width(), image->height());
}

/// The modes that a host may choose; any other number is the compressed picture.
int homomorphicMode(int mode) {
    switch (mode) {
        case ORV_HOMOMORPHIC_REFLECTANCE:
        case ORV_HOMOMORPHIC_LOG_REFLECTANCE:
        case ORV_HOMOMORPHIC_ILLUMINATION:
        case ORV_HOMOMORPHIC_LOG_ILLUMINATION:
            return mode;
        default:
            return ORV_HOMOMORPHIC_COMPRESSED;
    }
}

}  // namespace

}  // namespace orv

extern "C" {

void* ORVIFVanVieltBlurringIirOp(void* image, double sigma) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        if (!orv::canBlur(source)) {
            return nullptr;
        }
        return orv::VanVlietBlurOperator(sigma).apply(*source, nullptr);
    });
}

void* ORVIHomomorphicOp(void* image, double gamma, int mode) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        if (!orv::canBlur(source)) {
            return nullptr;
        }
        return orv::HomomorphicOperator(orv::homomorphicMode(mode), gamma)
            .apply(*source, nullptr);
    });
}

void* ORVRetinex(void* image, double gamma, double alpha, double beta, int levels) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        orv::RetinexOperator retinex(gamma, alpha, beta, levels);
        if (source == nullptr || !retinex.accepts(source->width(), source->height())) {
            return nullptr;
        }
        return retinex.apply(*source, nullptr);
    });
}

void* ORVIShockOp(void* image, int method, int iterations, double timeStep) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        if (source == nullptr) {
            return nullptr;
        }
        return orv::ShockOperator(iterations, method, timeStep, orv::kShockDiffusionWeight,
                                  orv::kShockArctanScale)
            .apply(*source, nullptr);
    });
}

void* ORVISusanRestoration(void* image, int iterations, double threshold, double sigma) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        if (source == nullptr) {
            return nullptr;
        }
        return orv::SusanRestorationOperator(iterations, threshold, sigma)
            .apply(*source, nullptr);
    });
}

}  // extern "C"
