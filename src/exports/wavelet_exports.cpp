#include "exports/call_frame.h"
#include "exports/keyword.h"
#include "operators/thin/wavelet_denoising_operator.h"
#include "orv/orv_constants.h"

extern "C" void* ORVWaveletDenoising(void* image, const char* algorithm, int levels,
                                     int wavelet) {
    return orv::callFrame([&]() -> std::unique_ptr<orv::DiscreteImage> {
        const orv::RgbDiscreteImage* source = orv::imageOf(image);
        if (source == nullptr || algorithm == nullptr || wavelet < 0 ||
            wavelet >= ORV_WAVELET_COUNT) {
            return nullptr;
        }
        return orv::WaveletDenoisingOperator(orv::shrinkageNumber(algorithm), levels, wavelet)
            .apply(*source, nullptr);
    });
}
