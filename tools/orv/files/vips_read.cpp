#include "files/library_codec.h"

#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "files/exif_block.h"
#include "files/exif_container.h"
#include "files/vips_metadata.h"
#include "files/vips_support.h"

namespace orv::cli {

namespace {

VipsPicture open(VipsSource* file, Format format) {
    VipsImage* image = nullptr;
    int failed = 1;
    switch (format) {
        case Format::Png:
            failed = vips_pngload_source(file, &image, "access", VIPS_ACCESS_SEQUENTIAL,
                                         "fail_on", VIPS_FAIL_ON_ERROR, nullptr);
            break;
        case Format::Jpeg:
            failed = vips_jpegload_source(file, &image, "access", VIPS_ACCESS_SEQUENTIAL,
                                          "fail_on", VIPS_FAIL_ON_WARNING, nullptr);
            break;
        case Format::Tiff:
            failed = vips_tiffload_source(file, &image, "access", VIPS_ACCESS_SEQUENTIAL,
                                          "fail_on", VIPS_FAIL_ON_ERROR, nullptr);
            break;
        case Format::Webp:
            failed = vips_webpload_source(file, &image, "access", VIPS_ACCESS_SEQUENTIAL,
                                          "fail_on", VIPS_FAIL_ON_ERROR, nullptr);
            break;
        default:
            break;
    }
    return VipsPicture(failed != 0 ? nullptr : image);
}

/// Opens a file or the bytes of one; samples come when they are asked for.
VipsPicture open(const PictureSource& source, Format format) {
    const std::unique_ptr<VipsSource, VipsUnref> file(
        source.inMemory ? vips_source_new_from_memory(source.bytes.data(), source.bytes.size())
                        : vips_source_new_from_file(source.name.c_str()));
    return file == nullptr ? nullptr : open(file.get(), format);
}

bool isCmyk(VipsImage* image) {
    return vips_image_get_interpretation(image) == VIPS_INTERPRETATION_CMYK;
}

/// CMYK has no counterpart among planes: it becomes sRGB through its profile.
VipsPicture withoutCmyk(VipsPicture image) {
    if (!isCmyk(image.get())) {
        return image;
    }
    VipsImage* converted = nullptr;
    if (vips_icc_transform(image.get(), &converted, "srgb", "embedded", TRUE, "input_profile",
                           "cmyk", nullptr) != 0) {
        return nullptr;
    }
    return VipsPicture(converted);
}

bool depthOf(VipsBandFormat format, SampleDepth& depth) {
    switch (format) {
        case VIPS_FORMAT_UCHAR:
            depth = SampleDepth::Bits8;
            return true;
        case VIPS_FORMAT_USHORT:
            depth = SampleDepth::Bits16;
            return true;
        case VIPS_FORMAT_FLOAT:
            depth = SampleDepth::Float;
            return true;
        default:
            return false;
    }
}

int pagesOf(VipsImage* image) {
    int pages = 1;
    return hasField(image, VIPS_META_N_PAGES) &&
                   vips_image_get_int(image, VIPS_META_N_PAGES, &pages) == 0
               ? pages
               : 1;
}

/// Why samples of this kind can't become planes; empty when they can.
std::string kindRefusal(VipsImage* image, int colours) {
    const int pages = pagesOf(image);
    if (pages > 1) {
        return "holds " + std::to_string(pages) + " pages or frames; orv takes single pictures";
    }
    const VipsInterpretation kind = vips_image_get_interpretation(image);
    const bool known = kind == VIPS_INTERPRETATION_B_W || kind == VIPS_INTERPRETATION_GREY16 ||
                       kind == VIPS_INTERPRETATION_sRGB || kind == VIPS_INTERPRETATION_RGB ||
                       kind == VIPS_INTERPRETATION_RGB16 || kind == VIPS_INTERPRETATION_scRGB ||
                       kind == VIPS_INTERPRETATION_MULTIBAND;
    if (!known || (colours != 1 && colours != 3)) {
        return "has " + std::to_string(vips_image_get_bands(image)) + " channels of kind " +
               vips_enum_nick(VIPS_TYPE_INTERPRETATION, kind) +
               "; orv takes grey and RGB, with or without alpha";
    }
    SampleDepth depth = SampleDepth::Bits8;
    const VipsBandFormat format = vips_image_get_format(image);
    return depthOf(format, depth)
               ? std::string()
               : "has samples of an unusual type (" +
                     std::string(vips_enum_nick(VIPS_TYPE_BAND_FORMAT, format)) +
                     "); orv takes 8 and 16 bits and float";
}

/// Takes sizes and kinds over; the samples come later.
std::string describe(VipsImage* image, Picture& picture) {
    InterleavedSamples& samples = picture.samples;
    samples.width = vips_image_get_width(image);
    samples.height = vips_image_get_height(image);
    samples.channels = vips_image_get_bands(image);
    picture.alpha = vips_image_hasalpha(image) != 0;
    picture.colours = samples.channels - (picture.alpha ? 1 : 0);
    depthOf(vips_image_get_format(image), samples.depth);
    return kindRefusal(image, picture.colours);
}

/// Turns the samples upright as an EXIF orientation from 2 to 8 asks.
std::string turnUpright(int orientation, InterleavedSamples& samples) {
    const VipsPicture stored = imageOver(samples);
    VipsImage* upright = nullptr;
    if (stored == nullptr) {
        return vipsDamage();
    }
    vips_image_set_int(stored.get(), VIPS_META_ORIENTATION, orientation);
    if (vips_autorot(stored.get(), &upright, nullptr) != 0) {
        return vipsDamage();
    }
    const VipsPicture owner(upright);
    InterleavedSamples turned = samples;
    turned.bytes.clear();
    turned.width = vips_image_get_width(upright);
    turned.height = vips_image_get_height(upright);
    const std::string error = copySamples(upright, turned);
    if (error.empty()) {
        samples = std::move(turned);
    }
    return error;
}

std::string floatRefusal(const InterleavedSamples& samples) {
    if (samples.depth != SampleDepth::Float) {
        return {};
    }
    for (std::size_t i = 0; i < samples.bytes.size(); i += sizeof(float)) {
        float sample = 0.0f;
        std::memcpy(&sample, &samples.bytes[i], sizeof sample);
        if (!(sample >= 0.0f && sample <= 1.0f)) {
            return "has float samples outside 0 to 1, where orv puts black and white";
        }
    }
    return {};
}

/// Opens a source as RGB or grey.
///
/// Fails:   with a reason; an empty text means success.
std::string openAsRgb(const PictureSource& source, Format format, VipsPicture& image,
                      bool& cmyk) {
    const std::string error = startVips();
    if (!error.empty()) {
        return error;
    }
    profileComplaint();
    vips_error_clear();
    image = open(source, format);
    if (image == nullptr) {
        return vipsDamage();
    }
    cmyk = isCmyk(image.get());
    image = withoutCmyk(std::move(image));
    if (image == nullptr) {
        return vipsDamage();
    }
    if (format == Format::Png) {
        const std::string block = exifOfPng(source);
        setExif(image.get(), block);
        vips_image_set_int(image.get(), VIPS_META_ORIENTATION, exifFacts(block).orientation);
    }
    return {};
}

}  // namespace

std::string readHeaderByLibrary(const PictureSource& source, PictureHeader& header) {
    VipsPicture image;
    const std::string error = openAsRgb(source, header.format, image, header.cmyk);
    if (!error.empty()) {
        return error;
    }
    Picture picture;
    header.refusal = describe(image.get(), picture);
    header.width = picture.samples.width;
    header.height = picture.samples.height;
    header.channels = picture.samples.channels;
    header.colours = picture.colours;
    header.alpha = picture.alpha;
    header.depth = picture.samples.depth;
    header.pages = pagesOf(image.get());
    header.orientation = vips_image_get_orientation(image.get());
    header.palette = hasField(image.get(), "palette-bit-depth");
    if (vips_image_get_orientation_swap(image.get()) != 0) {
        std::swap(header.width, header.height);
    }
    describeMetadata(image.get(), header);
    return {};
}

std::string readByLibrary(const PictureSource& source, Format format, Picture& picture) {
    VipsPicture image;
    bool cmyk = false;
    std::string error = openAsRgb(source, format, image, cmyk);
    if (error.empty()) {
        error = describe(image.get(), picture);
    }
    if (error.empty()) {
        error = copySamples(image.get(), picture.samples);
    }
    if (error.empty() && format == Format::Jpeg && *vips_error_buffer() != '\0') {
        // A warning about the last lines comes too late to fail the read itself.
        error = vipsDamage();
    }
    if (error.empty()) {
        error = floatRefusal(picture.samples);
    }
    if (!error.empty()) {
        return error;
    }
    if (profileComplaint() && !hasField(image.get(), VIPS_META_ICC_NAME)) {
        picture.warnings.push_back(source.name +
                                   ": the colour profile is unusable and is left out");
    }
    const int orientation = vips_image_get_orientation(image.get());
    picture.metadata = metadataOf(image.get());
    image.reset();
    if (orientation >= 2 && orientation <= 8) {
        error = turnUpright(orientation, picture.samples);
    }
    return error;
}

}  // namespace orv::cli
