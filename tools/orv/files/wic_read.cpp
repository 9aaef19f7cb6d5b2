#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>

#include "files/bmp_codec.h"
#include "files/library_codec.h"
#include "files/wic_blocks.h"
#include "files/wic_metadata.h"
#include "files/wic_support.h"
#include "files/wic_upright.h"

namespace orv::cli {

namespace {

/// What the samples of a picture become, and the format in which they are asked for.
struct Target {
    const GUID* format;
    int channels;
    bool alpha;
    SampleDepth depth;
};

// The names of formats are variables of a header, so no table can be constant.
const Target* targetOf(const GUID& stored) {
    static const Target grey{&GUID_WICPixelFormat8bppGray, 1, false, SampleDepth::Bits8};
    static const Target colour{&GUID_WICPixelFormat24bppBGR, 3, false, SampleDepth::Bits8};
    static const Target clear{&GUID_WICPixelFormat32bppBGRA, 4, true, SampleDepth::Bits8};
    static const Target deepGrey{&GUID_WICPixelFormat16bppGray, 1, false, SampleDepth::Bits16};
    static const Target deep{&GUID_WICPixelFormat48bppRGB, 3, false, SampleDepth::Bits16};
    static const Target deepClear{&GUID_WICPixelFormat64bppRGBA, 4, true, SampleDepth::Bits16};
    struct Pair {
        const GUID* stored;
        const Target* target;
    };
    static const std::array<Pair, 23> pairs{{
        {&GUID_WICPixelFormatBlackWhite, &grey},
        {&GUID_WICPixelFormat2bppGray, &grey},
        {&GUID_WICPixelFormat4bppGray, &grey},
        {&GUID_WICPixelFormat8bppGray, &grey},
        {&GUID_WICPixelFormat16bppGray, &deepGrey},
        {&GUID_WICPixelFormat1bppIndexed, &colour},
        {&GUID_WICPixelFormat2bppIndexed, &colour},
        {&GUID_WICPixelFormat4bppIndexed, &colour},
        {&GUID_WICPixelFormat8bppIndexed, &colour},
        {&GUID_WICPixelFormat16bppBGR555, &colour},
        {&GUID_WICPixelFormat16bppBGR565, &colour},
        {&GUID_WICPixelFormat16bppBGRA5551, &clear},
        {&GUID_WICPixelFormat24bppBGR, &colour},
        {&GUID_WICPixelFormat24bppRGB, &colour},
        {&GUID_WICPixelFormat32bppBGR, &colour},
        {&GUID_WICPixelFormat32bppBGRA, &clear},
        {&GUID_WICPixelFormat32bppPBGRA, &clear},
        {&GUID_WICPixelFormat32bppRGBA, &clear},
        {&GUID_WICPixelFormat48bppRGB, &deep},
        {&GUID_WICPixelFormat64bppRGB, &deep},
        {&GUID_WICPixelFormat64bppBGRA, &deepClear},
        {&GUID_WICPixelFormat64bppRGBA, &deepClear},
        {&GUID_WICPixelFormat64bppPRGBA, &deepClear},
    }};
    for (const Pair& pair : pairs) {
        if (*pair.stored == stored) {
            return pair.target;
        }
    }
    return nullptr;
}

/// A file that is open, and what is known of its first picture.
struct Opened {
    std::vector<unsigned char> owned;
    const std::vector<unsigned char>* bytes = nullptr;
    ComPointer<IWICStream> stream;
    ComPointer<IWICBitmapDecoder> decoder;
    ComPointer<IWICBitmapFrameDecode> frame;
    UINT pages = 0;
    UINT width = 0;
    UINT height = 0;
    GUID stored{};
    Target target{};
    bool palette = false;
    bool greyFile = false;  // grey that the component gives as RGB or RGBA
    bool alphaBmp = false;  // a BMP for the tool's own codec
    bool cmyk = false;

    std::string_view text() const {
        return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
    }
};

std::string damaged() {
    return "is damaged or cut short";
}

std::string unusual() {
    return "has samples of an unusual kind; orv takes grey and RGB of 8 and 16 bits on "
           "Windows, "
           "with or without alpha";
}

std::string reasonOf(HRESULT result) {
    switch (result) {
        case WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT:
        case WINCODEC_ERR_UNSUPPORTEDOPERATION:
        case E_NOTIMPL:
            return unusual();
        case E_OUTOFMEMORY:
            return "needs more memory than there is";
        default:
            return damaged();
    }
}

bool isIndexed(const GUID& format) {
    return format == GUID_WICPixelFormat1bppIndexed ||
           format == GUID_WICPixelFormat2bppIndexed ||
           format == GUID_WICPixelFormat4bppIndexed || format == GUID_WICPixelFormat8bppIndexed;
}

/// The colours of a palette, each as ARGB.
std::vector<WICColor> paletteOf(IWICBitmapFrameDecode* frame) {
    ComPointer<IWICPalette> palette;
    UINT count = 0;
    if (FAILED(wicFactory()->CreatePalette(palette.place())) ||
        FAILED(frame->CopyPalette(palette.get())) || FAILED(palette->GetColorCount(&count))) {
        return {};
    }
    std::vector<WICColor> colours(count);
    return SUCCEEDED(palette->GetColors(count, colours.data(), &count))
               ? colours
               : std::vector<WICColor>();
}

bool isClear(WICColor colour) {
    return colour >> 24U != 0xffU;
}

bool isGrey(WICColor colour) {
    return (colour & 0xffU) == (colour >> 8U & 0xffU) &&
           (colour & 0xffU) == (colour >> 16U & 0xffU);
}

/// Versions of the component disagree about the fourth byte of a BMP.
bool isAlphaBmp(Format format, const std::vector<unsigned char>& file) {
    PictureHeader header;
    return format == Format::Bmp &&
           bmpHeader(file, static_cast<double>(file.size()), header).empty() && header.alpha;
}

/// Whether the head of a PNG says grey; its byte 25 is the kind of colour.
bool isGreyPng(Format format, std::string_view file) {
    constexpr std::size_t kColourKind = 25;
    return format == Format::Png && file.size() > kColourKind &&
           (file[kColourKind] == 0 || file[kColourKind] == 4);
}

/// Opens a file and its first picture; samples come when they are asked for.
std::string open(const PictureSource& source, Format format, Opened& opened) {
    IWICImagingFactory* const factory = wicFactory();
    if (factory == nullptr) {
        return wicMissing();
    }
    if (!source.inMemory) {
        std::string error = readAll(source, opened.owned);
        if (!error.empty()) {
            return error;
        }
    }
    opened.bytes = source.inMemory ? &source.bytes : &opened.owned;
    if (opened.bytes->size() > 0xffffffffU) {
        return "holds more than the 4 GB that orv takes on Windows";
    }
    if (isCutShort(format, opened.text())) {
        return damaged();
    }
    auto* const bytes = const_cast<BYTE*>(opened.bytes->data());
    HRESULT result = S_OK;
    const auto went = [&result](HRESULT code) {
        result = code;
        return SUCCEEDED(code);
    };
    const bool whole =
        went(factory->CreateStream(opened.stream.place())) &&
        went(opened.stream->InitializeFromMemory(bytes,
                                                 static_cast<DWORD>(opened.bytes->size()))) &&
        went(factory->CreateDecoder(*containerOf(format), nullptr, opened.decoder.place())) &&
        went(opened.decoder->Initialize(opened.stream.get(), WICDecodeMetadataCacheOnDemand)) &&
        went(opened.decoder->GetFrameCount(&opened.pages)) &&
        went(opened.decoder->GetFrame(0, opened.frame.place())) &&
        went(opened.frame->GetSize(&opened.width, &opened.height)) &&
        went(opened.frame->GetPixelFormat(&opened.stored));
    return whole && opened.width > 0 && opened.height > 0 ? std::string() : reasonOf(result);
}

/// Finds what the samples become.
///
/// Fails:   with a reason why they can't be planes; an empty text means success.
std::string describe(Format format, Opened& opened) {
    if (opened.pages > 1) {
        return "holds " + std::to_string(opened.pages) +
               " pages or frames; orv takes single pictures";
    }
    opened.cmyk = opened.stored == GUID_WICPixelFormat32bppCMYK ||
                  opened.stored == GUID_WICPixelFormat64bppCMYK ||
                  opened.stored == GUID_WICPixelFormat40bppCMYKAlpha ||
                  opened.stored == GUID_WICPixelFormat80bppCMYKAlpha;
    if (opened.cmyk) {
        return "has the colours of print (CMYK); orv takes grey and RGB on Windows";
    }
    const Target* target = targetOf(opened.stored);
    if (target == nullptr) {
        return unusual();
    }
    opened.palette = isIndexed(opened.stored);
    const std::vector<WICColor> colours =
        opened.palette ? paletteOf(opened.frame.get()) : std::vector<WICColor>();
    opened.alphaBmp = isAlphaBmp(format, *opened.bytes);
    if (opened.alphaBmp || std::any_of(colours.begin(), colours.end(), isClear)) {
        target = targetOf(GUID_WICPixelFormat32bppBGRA);
    }
    opened.target = *target;
    const bool greyPalette = format == Format::Bmp && opened.palette &&
                             std::all_of(colours.begin(), colours.end(), isGrey);
    opened.greyFile = greyPalette || (target->channels > 1 && isGreyPng(format, opened.text()));
    return {};
}

/// The picture in a format.
///
/// Fails:   null.
ComPointer<IWICBitmapSource> converted(const Opened& opened, const GUID& format) {
    ComPointer<IWICBitmapSource> result;
    if (opened.stored == format) {
        opened.frame->AddRef();
        return ComPointer<IWICBitmapSource>(opened.frame.get());
    }
    const HRESULT made = WICConvertBitmapSource(format, opened.frame.get(), result.place());
    return FAILED(made) ? ComPointer<IWICBitmapSource>() : std::move(result);
}

/// Blue, green, red as red, green, blue.
void swapEnds(std::vector<unsigned char>& bytes, std::size_t channels) {
    for (std::size_t i = 0; i + channels <= bytes.size(); i += channels) {
        std::swap(bytes[i], bytes[i + 2]);
    }
}

/// Leaves out the last of four channels of 8 bits.
void dropFourth(InterleavedSamples& samples) {
    std::size_t to = 0;
    for (std::size_t at = 0; at < samples.bytes.size(); at += 4, to += 3) {
        std::memmove(&samples.bytes[to], &samples.bytes[at], 3);
    }
    samples.bytes.resize(to);
    samples.channels = 3;
}

/// Leaves the first of three equal channels, and alpha, which is the last.
void keepGrey(InterleavedSamples& samples) {
    const std::size_t sample = bytesOf(samples.depth);
    const auto channels = static_cast<std::size_t>(samples.channels);
    const std::size_t kept = channels == 4 ? 2 : 1;
    std::size_t to = 0;
    for (std::size_t at = 0; at < samples.bytes.size(); at += channels * sample) {
        std::memmove(&samples.bytes[to], &samples.bytes[at], sample);
        if (kept == 2) {
            std::memmove(&samples.bytes[to + sample], &samples.bytes[at + 3 * sample], sample);
        }
        to += kept * sample;
    }
    samples.bytes.resize(to);
    samples.channels = static_cast<int>(kept);
}

std::string copySamples(const Opened& opened, InterleavedSamples& samples) {
    // Every version of the component makes four bytes of palettes and single bits.
    const bool four = opened.target.depth == SampleDepth::Bits8 && !opened.target.alpha &&
                      opened.stored != *opened.target.format;
    const ComPointer<IWICBitmapSource> image =
        converted(opened, four ? GUID_WICPixelFormat32bppBGRA : *opened.target.format);
    if (!image) {
        return damaged();
    }
    samples.width = static_cast<int>(opened.width);
    samples.height = static_cast<int>(opened.height);
    samples.channels = four ? 4 : opened.target.channels;
    samples.depth = opened.target.depth;
    const std::size_t stride = static_cast<std::size_t>(samples.width) *
                               static_cast<std::size_t>(samples.channels) *
                               bytesOf(samples.depth);
    samples.bytes.resize(stride * static_cast<std::size_t>(samples.height));
    // The size of a buffer is told in 32 bits.
    constexpr std::size_t kMostBytes = 1U << 30;
    const int band = static_cast<int>(std::max<std::size_t>(1, kMostBytes / stride));
    for (int y = 0; y < samples.height; y += band) {
        const WICRect rows{0, y, samples.width, std::min(band, samples.height - y)};
        const std::size_t count = stride * static_cast<std::size_t>(rows.Height);
        if (FAILED(image->CopyPixels(&rows, static_cast<UINT>(stride), static_cast<UINT>(count),
                                     &samples.bytes[stride * static_cast<std::size_t>(y)]))) {
            return damaged();
        }
    }
    if (samples.depth == SampleDepth::Bits8 && samples.channels > 1) {
        swapEnds(samples.bytes, static_cast<std::size_t>(samples.channels));
    }
    if (four) {
        dropFourth(samples);
    }
    if (opened.greyFile || (four && opened.target.channels == 1)) {
        keepGrey(samples);
    }
    return {};
}

}  // namespace

std::string readHeaderByLibrary(const PictureSource& source, PictureHeader& header) {
    Opened opened;
    std::string error = open(source, header.format, opened);
    if (!error.empty()) {
        return error;
    }
    header.refusal = describe(header.format, opened);
    header.width = static_cast<int>(opened.width);
    header.height = static_cast<int>(opened.height);
    header.alpha = opened.target.alpha;
    header.colours = opened.greyFile ? 1 : opened.target.channels - (header.alpha ? 1 : 0);
    header.channels = header.colours + (header.alpha ? 1 : 0);
    header.depth = opened.target.depth;
    header.pages = static_cast<int>(opened.pages);
    header.palette = opened.palette && !opened.greyFile;
    header.cmyk = opened.cmyk;
    const WicMetadata metadata =
        readWicMetadata(header.format, opened.text(), opened.frame.get());
    describeWicMetadata(metadata, header.format, opened.text(), header);
    if (header.orientation > 4) {
        std::swap(header.width, header.height);
    }
    return {};
}

std::string readByLibrary(const PictureSource& source, Format format, Picture& picture) {
    Opened opened;
    std::string error = open(source, format, opened);
    if (error.empty()) {
        error = describe(format, opened);
    }
    if (error.empty()) {
        error = opened.alphaBmp ? decodeBmp(*opened.bytes, picture)
                                : copySamples(opened, picture.samples);
    }
    if (!error.empty()) {
        return error;
    }
    picture.alpha = opened.target.alpha;
    picture.colours = picture.samples.channels - (picture.alpha ? 1 : 0);
    auto metadata = std::make_shared<WicMetadata>(
        readWicMetadata(format, opened.text(), opened.frame.get()));
    PictureHeader facts;
    describeWicMetadata(*metadata, format, opened.text(), facts);
    picture.metadata = std::move(metadata);
    turnUpright(facts.orientation, picture.samples);
    return {};
}

}  // namespace orv::cli
