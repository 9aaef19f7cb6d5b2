#include "exports/call_frame.h"

// The operators of these functions have not come yet: each refuses, as orv.h says.
extern "C" {

void* ORVIFVanVieltBlurringIirOp(void* /*image*/, double /*sigma*/) {
    return nullptr;
}

void* ORVIHomomorphicOp(void* /*image*/, double /*gamma*/, int /*mode*/) {
    return nullptr;
}

void* ORVRetinex(void* /*image*/, double /*gamma*/, double /*alpha*/, double /*beta*/,
                 int /*levels*/) {
    return nullptr;
}

void* ORVIShockOp(void* /*image*/, int /*method*/, int /*iterations*/, double /*timeStep*/) {
    return nullptr;
}

void* ORVISusanRestoration(void* /*image*/, int /*iterations*/, double /*threshold*/,
                           double /*sigma*/) {
    return nullptr;
}

}  // extern "C"
