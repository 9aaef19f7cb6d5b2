#include "library.h"

#include <cstring>

#include "platform.h"

namespace golden {

namespace {

template <class Function>
void take(void* loaded, const char* name, Function& function, std::string& error) {
    void* const address = findFunction(loaded, name);
    static_assert(sizeof address == sizeof function, "an address holds a function");
    if (address == nullptr) {
        error += std::string(error.empty() ? "" : "\n") + "the library has no " + name;
        return;
    }
    std::memcpy(&function, &address, sizeof function);
}

}  // namespace

bool openLibrary(const char* path, Library& library, std::string& error) {
    error.clear();
    void* const loaded = loadLibrary(path, error);
    if (loaded == nullptr) {
        return false;
    }
    take(loaded, "SetORVCallBack", library.setCallBack, error);
    take(loaded, "ConvertORVImage", library.convert, error);
    take(loaded, "DestroyORVImage", library.destroy, error);
    take(loaded, "GetORVImageInfo", library.info, error);
    take(loaded, "GetORVImageData", library.data, error);
    take(loaded, "ORVFastRestoration", library.fastRestoration, error);
    take(loaded, "ORVFastDenoiser", library.fastDenoiser, error);
    take(loaded, "ORVIFAosBarashOp", library.aosBarash, error);
    take(loaded, "ORVIFVanVieltBlurringIirOp", library.blur, error);
    take(loaded, "ORVIHomomorphicOp", library.homomorphic, error);
    take(loaded, "ORVRetinex", library.retinex, error);
    take(loaded, "ORVIShockOp", library.shock, error);
    take(loaded, "ORVISusanRestoration", library.susan, error);
    take(loaded, "ORVWaveletDenoising", library.wavelet, error);
    take(loaded, "ORVISimpleColorTranfer", library.colorTransfer, error);
    take(loaded, "ORVIColorToGreyTranfertOp", library.colorToGrey, error);
    return error.empty();
}

}  // namespace golden
