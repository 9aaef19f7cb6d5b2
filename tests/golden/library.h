#pragma once

#include <string>

#include "orv/orv.h"

namespace golden {

/// The sixteen functions of a library that was loaded at run time, with the types of orv.h.
struct Library {
    decltype(&::SetORVCallBack) setCallBack;
    decltype(&::ConvertORVImage) convert;
    decltype(&::DestroyORVImage) destroy;
    decltype(&::GetORVImageInfo) info;
    decltype(&::GetORVImageData) data;
    decltype(&::ORVFastRestoration) fastRestoration;
    decltype(&::ORVFastDenoiser) fastDenoiser;
    decltype(&::ORVIFAosBarashOp) aosBarash;
    decltype(&::ORVIFVanVieltBlurringIirOp) blur;
    decltype(&::ORVIHomomorphicOp) homomorphic;
    decltype(&::ORVRetinex) retinex;
    decltype(&::ORVIShockOp) shock;
    decltype(&::ORVISusanRestoration) susan;
    decltype(&::ORVWaveletDenoising) wavelet;
    decltype(&::ORVISimpleColorTranfer) colorTransfer;
    decltype(&::ORVIColorToGreyTranfertOp) colorToGrey;
};

/// Loads a library and takes the sixteen by name. Fails: false, and `error` says why.
bool openLibrary(const char* path, Library& library, std::string& error);

}  // namespace golden
