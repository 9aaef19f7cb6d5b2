#include <algorithm>
#include <cstddef>
#include <string_view>

#include "files/bmp_codec.h"
#include "files/exif_block.h"
#include "files/exif_container.h"
#include "files/icc_profile.h"
#include "files/library_codec.h"
#include "files/wic_blocks.h"
#include "files/wic_metadata.h"
#include "files/wic_support.h"
#include "files/xmp_packet.h"

namespace orv::cli {

namespace {

/// A picture as an encoder takes it.
struct Sheet {
    const GUID* format = nullptr;
    int channels = 0;
    InterleavedSamples samples;
};

/// Grey as three equal channels where an encoder has no grey of this kind, and red and blue in the
/// order of 8-bit formats. Grey in a BMP has a palette.
Sheet sheetOf(const Picture& picture, const WriteSettings& settings, bool asColour) {
    const bool deep = picture.samples.depth == SampleDepth::Bits16;
    if (settings.format->format == Format::Bmp && picture.colours == 1) {
        return {&GUID_WICPixelFormat8bppIndexed, 1, picture.samples};
    }
    Sheet sheet;
    sheet.samples =
        asColour && picture.colours == 1 ? coloured(picture.samples) : picture.samples;
    sheet.channels = sheet.samples.channels;
    if (sheet.channels == 1) {
        sheet.format = deep ? &GUID_WICPixelFormat16bppGray : &GUID_WICPixelFormat8bppGray;
    } else if (sheet.channels == 3) {
        sheet.format = deep ? &GUID_WICPixelFormat48bppRGB : &GUID_WICPixelFormat24bppBGR;
    } else {
        sheet.format = deep ? &GUID_WICPixelFormat64bppRGBA : &GUID_WICPixelFormat32bppBGRA;
    }
    if (!deep && sheet.channels > 1) {
        const auto step = static_cast<std::size_t>(sheet.channels);
        std::vector<unsigned char>& bytes = sheet.samples.bytes;
        for (std::size_t i = 0; i + step <= bytes.size(); i += step) {
            std::swap(bytes[i], bytes[i + 2]);
        }
    }
    return sheet;
}

void setOption(IPropertyBag2* options, const wchar_t* name, VARIANT value) {
    PROPBAG2 option{};
    option.pstrName = const_cast<wchar_t*>(name);
    // What an encoder doesn't know it does in its own way.
    options->Write(1, &option, &value);
}

VARIANT byteOf(int value) {
    VARIANT variant{};
    variant.vt = VT_UI1;
    variant.bVal = static_cast<BYTE>(value);
    return variant;
}

void setOptions(IPropertyBag2* options, const WriteSettings& settings) {
    VARIANT quality{};
    switch (settings.format->format) {
        case Format::Png:
            setOption(options, L"FilterOption", byteOf(WICPngFilterAdaptive));
            break;
        case Format::Jpeg:
            quality.vt = VT_R4;
            quality.fltVal = static_cast<float>(settings.quality) / 100.0f;
            setOption(options, L"ImageQuality", quality);
            setOption(options, L"JpegYCrCbSubsampling", byteOf(WICJpegYCrCbSubsampling444));
            break;
        case Format::Tiff:
            setOption(options, L"TiffCompressionMethod", byteOf(WICTiffCompressionZIP));
            break;
        default:
            break;
    }
}

HRESULT writeRows(IWICBitmapFrameEncode* frame, const InterleavedSamples& samples) {
    const std::size_t stride = samples.bytes.size() / static_cast<std::size_t>(samples.height);
    // The size of a buffer is told in 32 bits.
    constexpr std::size_t kMostBytes = 1U << 30;
    const int band = static_cast<int>(std::max<std::size_t>(1, kMostBytes / stride));
    HRESULT result = S_OK;
    for (int y = 0; y < samples.height && SUCCEEDED(result); y += band) {
        const int rows = std::min(band, samples.height - y);
        const std::size_t from = stride * static_cast<std::size_t>(y);
        result = frame->WritePixels(static_cast<UINT>(rows), static_cast<UINT>(stride),
                                    static_cast<UINT>(stride * static_cast<std::size_t>(rows)),
                                    const_cast<BYTE*>(&samples.bytes[from]));
    }
    return result;
}

bool setProfile(IWICBitmapFrameEncode* frame, const std::string& profile) {
    ComPointer<IWICColorContext> context;
    IWICColorContext* one = nullptr;
    if (FAILED(wicFactory()->CreateColorContext(context.place())) ||
        FAILED(context->InitializeFromMemory(reinterpret_cast<const BYTE*>(profile.data()),
                                             static_cast<UINT>(profile.size())))) {
        return false;
    }
    one = context.get();
    return SUCCEEDED(frame->SetColorContexts(1, &one));
}

HRESULT setGreyPalette(IWICBitmapFrameEncode* frame) {
    ComPointer<IWICPalette> palette;
    HRESULT result = wicFactory()->CreatePalette(palette.place());
    if (SUCCEEDED(result)) {
        result = palette->InitializePredefined(WICBitmapPaletteTypeFixedGray256, FALSE);
    }
    return SUCCEEDED(result) ? frame->SetPalette(palette.get()) : result;
}

/// Encodes one sheet.
///
/// Fails:   with the reason of the component; WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT when the encoder
///          would store another kind of sample.
HRESULT encodeSheet(const Sheet& sheet, const WriteSettings& settings,
                    const WicMetadata& metadata, IStream* stream, bool& profileKept) {
    ComPointer<IWICBitmapEncoder> encoder;
    ComPointer<IWICBitmapFrameEncode> frame;
    ComPointer<IPropertyBag2> options;
    HRESULT result = wicFactory()->CreateEncoder(*containerOf(settings.format->format), nullptr,
                                                 encoder.place());
    if (SUCCEEDED(result)) {
        result = encoder->Initialize(stream, WICBitmapEncoderNoCache);
    }
    if (SUCCEEDED(result)) {
        result = encoder->CreateNewFrame(frame.place(), options.place());
    }
    if (SUCCEEDED(result)) {
        setOptions(options.get(), settings);
        result = frame->Initialize(options.get());
    }
    if (SUCCEEDED(result)) {
        result = frame->SetSize(static_cast<UINT>(sheet.samples.width),
                                static_cast<UINT>(sheet.samples.height));
    }
    GUID stored = *sheet.format;
    if (SUCCEEDED(result)) {
        result = frame->SetPixelFormat(&stored);
    }
    if (SUCCEEDED(result) && stored != *sheet.format) {
        return WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT;
    }
    if (SUCCEEDED(result) && metadata.across > 0.0) {
        frame->SetResolution(metadata.across, metadata.down);
    }
    if (SUCCEEDED(result) && stored == GUID_WICPixelFormat8bppIndexed) {
        result = setGreyPalette(frame.get());
    }
    // The tool puts it into the others by itself, since not every version of the component does.
    profileKept = settings.format->format != Format::Tiff ||
                  (SUCCEEDED(result) && !metadata.profile.empty() &&
                   setProfile(frame.get(), metadata.profile));
    if (SUCCEEDED(result)) {
        result = writeRows(frame.get(), sheet.samples);
    }
    if (SUCCEEDED(result)) {
        result = frame->Commit();
    }
    return SUCCEEDED(result) ? encoder->Commit() : result;
}

std::string bytesOfStream(IStream* stream, std::vector<unsigned char>& bytes) {
    STATSTG facts{};
    const LARGE_INTEGER start{};
    HRESULT result = stream->Stat(&facts, STATFLAG_NONAME);
    if (SUCCEEDED(result)) {
        result = stream->Seek(start, STREAM_SEEK_SET, nullptr);
    }
    bytes.resize(static_cast<std::size_t>(facts.cbSize.QuadPart));
    ULONG count = 0;
    if (SUCCEEDED(result)) {
        result = stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count);
    }
    return SUCCEEDED(result) && count == bytes.size() ? std::string()
                                                      : wicReason("the result is lost", result);
}

/// Two bytes of each sample in the other order.
void swapBytes(std::vector<unsigned char>& bytes) {
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
        std::swap(bytes[i], bytes[i + 1]);
    }
}

/// Encodes a picture, as colour where the component has no such grey.
HRESULT encode(const WriteSettings& settings, const Picture& picture,
               const WicMetadata& metadata, bool swapped, ComPointer<IStream>& stream,
               bool& profileKept) {
    HRESULT result = E_FAIL;
    // The component knows no grey with alpha, and not every encoder has grey of 16 bits.
    for (const bool asColour : {false, true}) {
        if (!asColour && picture.samples.channels == 2) {
            continue;
        }
        Sheet sheet = sheetOf(picture, settings, asColour);
        if (swapped) {
            swapBytes(sheet.samples.bytes);
        }
        stream = {};
        result = CreateStreamOnHGlobal(nullptr, TRUE, stream.place());
        if (SUCCEEDED(result)) {
            result = encodeSheet(sheet, settings, metadata, stream.get(), profileKept);
        }
        if (result != WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT || picture.colours == 3) {
            break;
        }
    }
    return result;
}

/// Whether the encoder for PNG writes 16-bit samples with their bytes in the wrong order, as that
/// of some versions of Wine does: one pixel tells.
bool swapsWords() {
    static const bool swaps = [] {
        constexpr unsigned char kLow = 1;
        constexpr unsigned char kHigh = 2;
        Picture pixel;
        pixel.colours = 1;
        pixel.samples = {1, 1, 1, SampleDepth::Bits16, {kLow, kHigh}};
        WriteSettings settings;
        settings.format = formatEntry(Format::Png);
        ComPointer<IStream> stream;
        bool profileKept = false;
        PictureSource file;
        file.inMemory = true;
        Picture result;
        return SUCCEEDED(encode(settings, pixel, {}, false, stream, profileKept)) &&
               bytesOfStream(stream.get(), file.bytes).empty() &&
               readByLibrary(file, Format::Png, result).empty() &&
               result.samples.bytes.size() >= 2 && result.samples.bytes[0] == kHigh;
    }();
    return swaps;
}

/// The metadata that go into the result.
WicMetadata keptMetadata(const WriteSettings& settings, Picture& picture) {
    if (!settings.format->profile) {
        return {};
    }
    WicMetadata kept = picture.metadata == nullptr ? WicMetadata() : *wicMetadataOf(picture);
    if (!kept.profile.empty() &&
        profileSpace(kept.profile) != (picture.colours == 1 ? "GRAY" : "RGB ")) {
        kept.profile.clear();
        picture.warnings.emplace_back(
            "the colour profile doesn't fit the result and is left out");
    }
    const bool all = settings.strip == Strip::None;
    const std::string before = kept.exif;
    kept.exif.clear();
    if ((all || settings.strip == Strip::Gps) && !before.empty()) {
        kept.exif = exifForResult(before, picture.samples.width, picture.samples.height,
                                  settings.strip == Strip::Gps);
        if (kept.exif.empty()) {
            picture.warnings.emplace_back("the EXIF block is damaged and is left out");
        }
    }
    if (all || (settings.strip == Strip::Gps && !tellsPlace(kept.xmp))) {
        kept.xmp = uprightXmp(kept.xmp);
    } else {
        kept.xmp.clear();
    }
    return kept;
}

/// Puts what the component doesn't write into the encoded file.
void finish(Format format, const WicMetadata& kept, Picture& picture,
            std::vector<unsigned char>& bytes) {
    const auto leaveOut = [&picture](const char* what) {
        picture.warnings.push_back(std::string(what) + " and is left out");
    };
    if (format == Format::Tiff) {
        if (!kept.exif.empty()) {
            picture.warnings.emplace_back("orv writes no EXIF into TIFF; it is left out");
        }
        if (!kept.xmp.empty()) {
            picture.warnings.emplace_back(
                "orv writes no XMP into TIFF on Windows; it is left out");
        }
        return;
    }
    if (format == Format::Jpeg && !finishJpeg(kept.profile, kept.xmp, bytes)) {
        leaveOut("the packet of XMP is too large");
    }
    putResolution(format, kept.across, kept.down, bytes);
    if (format == Format::Png && !kept.profile.empty()) {
        putProfileIntoPng(kept.profile, bytes);
    }
    if (format == Format::Png && !kept.xmp.empty()) {
        putXmpIntoPng(kept.xmp, bytes);
    }
    if (!putExif(format, kept.exif, picture, bytes)) {
        leaveOut("the EXIF block is too large");
    }
}

}  // namespace

std::string encodeByLibrary(const WriteSettings& settings, Picture& picture,
                            std::vector<unsigned char>& bytes) {
    if (wicFactory() == nullptr) {
        return wicMissing();
    }
    if (settings.format->format == Format::Bmp && picture.alpha) {
        // Versions of the component disagree about the fourth byte of a BMP.
        bytes = encodeBmp(picture);
        return {};
    }
    const WicMetadata kept = keptMetadata(settings, picture);
    const bool deepPng =
        settings.format->format == Format::Png && picture.samples.depth == SampleDepth::Bits16;
    bool profileKept = false;
    ComPointer<IStream> stream;
    const HRESULT result =
        encode(settings, picture, kept, deepPng && swapsWords(), stream, profileKept);
    if (FAILED(result)) {
        return wicReason("the encoder refused", result);
    }
    std::string error = bytesOfStream(stream.get(), bytes);
    if (error.empty()) {
        if (!profileKept && !kept.profile.empty()) {
            picture.warnings.emplace_back(
                "the encoder takes no colour profile; that of the picture is left out");
        }
        finish(settings.format->format, kept, picture, bytes);
    }
    return error;
}

}  // namespace orv::cli
