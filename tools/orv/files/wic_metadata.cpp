#include "files/wic_metadata.h"

#include <vector>

#include "files/exif_block.h"
#include "files/icc_profile.h"
#include "files/library_codec.h"
#include "files/wic_blocks.h"
#include "files/xmp_packet.h"

namespace orv::cli {

namespace {

constexpr unsigned kTiffResolution = 282;
constexpr unsigned kTiffXmp = 700;
constexpr unsigned kTiffIptc = 33723;

/// Decoders make a profile up where a PNG tells a gamma alone.
bool hasProfile(Format format, std::string_view file) {
    std::string_view body;
    return format != Format::Png || pngChunk(file, "iCCP", "", body);
}

std::string profileBytes(IWICColorContext* context) {
    WICColorContextType type = WICColorContextUninitialized;
    UINT size = 0;
    if (FAILED(context->GetType(&type)) || type != WICColorContextProfile ||
        FAILED(context->GetProfileBytes(0, nullptr, &size))) {
        return {};
    }
    std::string bytes(size, '\0');
    const HRESULT read =
        context->GetProfileBytes(size, reinterpret_cast<BYTE*>(bytes.data()), &size);
    return SUCCEEDED(read) ? bytes : std::string();
}

/// The first ICC profile of a picture, which may name a colour space of EXIF beside it.
std::string profileOfFrame(IWICBitmapFrameDecode* frame) {
    UINT count = 0;
    if (FAILED(frame->GetColorContexts(0, nullptr, &count)) || count == 0) {
        return {};
    }
    std::vector<ComPointer<IWICColorContext>> owners(count);
    std::vector<IWICColorContext*> contexts;
    for (ComPointer<IWICColorContext>& owner : owners) {
        if (FAILED(wicFactory()->CreateColorContext(owner.place()))) {
            return {};
        }
        contexts.push_back(owner.get());
    }
    if (FAILED(frame->GetColorContexts(count, contexts.data(), &count))) {
        return {};
    }
    for (IWICColorContext* const context : contexts) {
        std::string bytes = profileBytes(context);
        if (!bytes.empty()) {
            return bytes;
        }
    }
    return {};
}

/// Whether a file tells how many dots an inch has; the component says 96 for one that doesn't.
bool tellsResolution(Format format, std::string_view file) {
    using std::string_view_literals::operator""sv;
    std::string_view body;
    switch (format) {
        case Format::Png:
            // The last byte tells the unit, which may be unknown.
            return pngChunk(file, "pHYs", "", body) && body.size() == 9 && body[8] == 1;
        case Format::Jpeg:
            body = jpegSegment(file, 0xe0, "JFIF\0"sv);
            return body.size() > 2 && body[2] != 0;
        case Format::Tiff:
            return tiffHasTag(file, kTiffResolution);
        default:
            return true;
    }
}

}  // namespace

WicMetadata readWicMetadata(Format format, std::string_view file,
                            IWICBitmapFrameDecode* frame) {
    WicMetadata metadata;
    if (format == Format::Jpeg) {
        metadata.profile = profileOfJpeg(file);
    } else if (hasProfile(format, file)) {
        metadata.profile = profileOfFrame(frame);
    }
    if (format != Format::Tiff) {
        metadata.exif = exifOfFile(format, file);
    }
    metadata.xmp = xmpOfFile(format, file);
    double across = 0.0;
    double down = 0.0;
    if (tellsResolution(format, file) && SUCCEEDED(frame->GetResolution(&across, &down))) {
        metadata.across = across;
        metadata.down = down;
    }
    return metadata;
}

void describeWicMetadata(const WicMetadata& metadata, Format format, std::string_view file,
                         PictureHeader& header) {
    const std::string_view block = exifOfFile(format, file);
    const ExifFacts facts = exifFacts(block);
    header.profile = profileName(metadata.profile);
    header.exif = !metadata.exif.empty();
    header.gps = tellsPlace(metadata.xmp) || facts.gps;
    const bool tiff = format == Format::Tiff;
    header.xmp = !metadata.xmp.empty() || (tiff && tiffHasTag(file, kTiffXmp));
    header.iptc = (format == Format::Jpeg && !jpegSegment(file, 0xed, "").empty()) ||
                  (tiff && tiffHasTag(file, kTiffIptc));
    header.dotsPerInch = metadata.across;
    header.orientation = facts.orientation;
    header.camera = facts.maker.empty() || facts.model.empty()
                        ? facts.maker + facts.model
                        : facts.maker + " " + facts.model;
    header.taken = facts.taken;
}

const WicMetadata* wicMetadataOf(const Picture& picture) {
    return static_cast<const WicMetadata*>(picture.metadata.get());
}

std::string profileOf(const Picture& picture) {
    return picture.metadata == nullptr ? std::string()
                                       : profileName(wicMetadataOf(picture)->profile);
}

}  // namespace orv::cli
