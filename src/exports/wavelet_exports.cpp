#include "exports/call_frame.h"

// The operator of this function has not come yet: it refuses, as orv.h says.
extern "C" void* ORVWaveletDenoising(void* /*image*/, const char* /*algorithm*/, int /*levels*/,
                                     int /*wavelet*/) {
    return nullptr;
}
