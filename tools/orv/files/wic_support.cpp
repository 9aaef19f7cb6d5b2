// The names of the component's objects are defined here, once.
#define INITGUID
#include "files/wic_support.h"

#include <array>
#include <cstdio>

#include "files/image_file.h"
#include "files/library_codec.h"

namespace orv::cli {

bool haveLibrary() {
    return true;
}

std::string libraryVersion() {
    return "Windows Imaging Component";
}

bool libraryCodes(Format format) {
    return containerOf(format) != nullptr;
}

std::string codingLimit() {
    return "takes what the Windows Imaging Component does";
}

std::string codingNotes() {
    return "- On Windows pictures go through the Windows Imaging Component. It has no WebP, "
           "and orv "
           "reads no CMYK and no floats through it. A TIFF keeps its profile alone. Grey with "
           "transparency is written as RGBA. BMP is read with any number of bits.\n";
}

IWICImagingFactory* wicFactory() {
    static IWICImagingFactory* const factory = []() -> IWICImagingFactory* {
        void* made = nullptr;
        const HRESULT started = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        return SUCCEEDED(started) && SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory,
                                                                nullptr, CLSCTX_INPROC_SERVER,
                                                                IID_IWICImagingFactory, &made))
                   ? static_cast<IWICImagingFactory*>(made)
                   : nullptr;
    }();
    return factory;
}

std::string wicMissing() {
    return "the Windows Imaging Component can't start";
}

const GUID* containerOf(Format format) {
    switch (format) {
        case Format::Png:
            return &GUID_ContainerFormatPng;
        case Format::Jpeg:
            return &GUID_ContainerFormatJpeg;
        case Format::Tiff:
            return &GUID_ContainerFormatTiff;
        case Format::Bmp:
            return &GUID_ContainerFormatBmp;
        default:
            return nullptr;
    }
}

std::string wicReason(const std::string& what, HRESULT code) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), " (code 0x%08lx of the Windows Imaging Component)",
                  static_cast<unsigned long>(code));
    return what + text.data();
}

}  // namespace orv::cli
