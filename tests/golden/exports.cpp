#include "exports.h"

#include <tuple>

#include "text_parts.h"

namespace golden {

namespace {

std::vector<int>& progressValues() {
    static std::vector<int> values;
    return values;
}

template <class... Parameters>
void* callWithNext(void* (*function)(Parameters...), CaseValues& values) {
    // Braces evaluate from left to right.
    const std::tuple<Parameters...> arguments{values.next<Parameters>()...};
    return values.complete() ? std::apply(function, arguments) : nullptr;
}

template <auto function>
Returned restore(const Library& library, CaseValues& values) {
    return {callWithNext(library.*function, values), "", ""};
}

/// Arguments: the bit count or "null" for no header; "pixels" or "null".
Returned convert(const Library& library, CaseValues& values) {
    const Picture& picture = values.nextBitmap();
    const char* const bits = values.next<const char*>();
    const char* const pixels = values.next<const char*>();
    BITMAPINFOHEADER header = {};
    header.biWidth = picture.width;
    header.biHeight = picture.height;
    int count = 0;
    if (bits != nullptr && readInt(bits, count)) {
        header.biBitCount = static_cast<std::uint16_t>(count);
    }
    return {library.convert(bits == nullptr ? nullptr : &header,
                            pixels == nullptr ? nullptr : picture.rows.data()),
            "", ""};
}

/// Argument: which of the two results are asked for, "both", "width" or "height".
Returned info(const Library& library, CaseValues& values) {
    void* const image = values.next<void*>();
    const std::string wanted = values.next<const char*>();
    int width = -1;
    int height = -1;
    library.info(image, wanted == "height" ? nullptr : &width,
                 wanted == "width" ? nullptr : &height);
    return {nullptr, std::to_string(width) + "x" + std::to_string(height), "-"};
}

Returned data(const Library& library, CaseValues& values) {
    void* const image = values.next<void*>();
    unsigned char* const pixels = library.data(image);
    int width = 0;
    int height = 0;
    library.info(image, &width, &height);
    const auto bytes = static_cast<std::size_t>(3 * width * height);
    return {nullptr, "none", pixels == nullptr ? "null" : hashOf(pixels, bytes)};
}

Returned destroyNull(const Library& library, CaseValues& values) {
    library.destroy(values.next<void*>());
    return {nullptr, "none", "-"};
}

/// Argument: "callback" or "null". A diffusion that reports follows.
Returned setCallBack(const Library& library, CaseValues& values) {
    void* const image = values.next<void*>();
    library.setCallBack(values.next<const char*>() == nullptr ? nullptr : recordProgress);
    return {library.fastRestoration(image, "AOS", 0, 1, 1.0, 5, 0.5, 10.0, "PM", 0, 0), "", ""};
}

struct Export {
    const char* name;
    CallExport call;
};

constexpr Export kExports[] = {
    {"SetORVCallBack", setCallBack},
    {"ConvertORVImage", convert},
    {"DestroyORVImage", destroyNull},
    {"GetORVImageInfo", info},
    {"GetORVImageData", data},
    {"ORVFastRestoration", restore<&Library::fastRestoration>},
    {"ORVFastDenoiser", restore<&Library::fastDenoiser>},
    {"ORVIFAosBarashOp", restore<&Library::aosBarash>},
    {"ORVIFVanVieltBlurringIirOp", restore<&Library::blur>},
    {"ORVIHomomorphicOp", restore<&Library::homomorphic>},
    {"ORVRetinex", restore<&Library::retinex>},
    {"ORVIShockOp", restore<&Library::shock>},
    {"ORVISusanRestoration", restore<&Library::susan>},
    {"ORVWaveletDenoising", restore<&Library::wavelet>},
    {"ORVISimpleColorTranfer", restore<&Library::colorTransfer>},
    {"ORVIColorToGreyTranfertOp", restore<&Library::colorToGrey>},
};

}  // namespace

CallExport exportNamed(const std::string& name) {
    for (const Export& one : kExports) {
        if (name == one.name) {
            return one.call;
        }
    }
    return nullptr;
}

void ORV_CALLBACK recordProgress(int percent) {
    progressValues().push_back(percent);
}

void forgetProgress() {
    progressValues().clear();
}

std::string recordedProgress() {
    return progressText(progressValues());
}

}  // namespace golden
