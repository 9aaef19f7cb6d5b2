#include "vips_file.h"

#include <vips/vips.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace orv::cli {

namespace {

constexpr int kJpegQuality = 92;
constexpr int kWebpQuality = 92;
constexpr int kDeflateLevel = 4;

struct Unref {
    void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

/// Whether a loader complained about a colour profile; it may have done so in any thread.
constinit std::atomic<bool> profileComplaint = false;

/// Keeps libvips's own lines from the user, but for what a loader leaves out.
void hearMessage(const gchar* /*domain*/, GLogLevelFlags /*level*/, const gchar* message,
                 gpointer /*data*/) {
    if (std::string_view(message).substr(0, 5) == "iCCP:") {
        profileComplaint = true;
    }
}

/// The first line of what libvips has to say, which is then forgotten.
std::string vipsReason() {
    std::string text(vips_error_buffer());
    vips_error_clear();
    const std::size_t end = text.find('\n');
    return end == std::string::npos ? text : text.substr(0, end);
}

/// The JPEG library says what is wrong; the others say no more than that a read failed.
std::string damaged() {
    constexpr std::string_view kJpeg = "VipsJpeg: ";
    const std::string reason = vipsReason();
    std::string text = "is damaged or cut short";
    if (reason.compare(0, kJpeg.size(), kJpeg) == 0) {
        text += " (" + reason.substr(kJpeg.size()) + ")";
    }
    return text;
}

Image load(const std::string& path, Format format) {
    VipsImage* image = nullptr;
    const char* const name = path.c_str();
    int failed = 1;
    switch (format) {
        case Format::Png:
            failed = vips_pngload(name, &image, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                  VIPS_FAIL_ON_ERROR, nullptr);
            break;
        case Format::Jpeg:
            failed = vips_jpegload(name, &image, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                   VIPS_FAIL_ON_WARNING, nullptr);
            break;
        case Format::Tiff:
            failed = vips_tiffload(name, &image, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                   VIPS_FAIL_ON_ERROR, nullptr);
            break;
        case Format::Webp:
            failed = vips_webpload(name, &image, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                   VIPS_FAIL_ON_ERROR, nullptr);
            break;
        default:
            break;
    }
    return Image(failed != 0 ? nullptr : image);
}

/// CMYK has no counterpart among planes: it becomes sRGB through its profile.
Image withoutCmyk(Image image) {
    if (vips_image_get_interpretation(image.get()) != VIPS_INTERPRETATION_CMYK) {
        return image;
    }
    VipsImage* converted = nullptr;
    if (vips_icc_transform(image.get(), &converted, "srgb", "embedded", TRUE, "input_profile",
                           "cmyk", nullptr) != 0) {
        return nullptr;
    }
    return Image(converted);
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

/// Takes sizes and kinds over; the samples come later.
std::string describe(VipsImage* image, Picture& picture) {
    int pages = 1;
    if (vips_image_get_typeof(image, VIPS_META_N_PAGES) != 0 &&
        vips_image_get_int(image, VIPS_META_N_PAGES, &pages) == 0 && pages > 1) {
        return "holds " + std::to_string(pages) + " pages or frames; orv takes single pictures";
    }
    InterleavedSamples& samples = picture.samples;
    samples.width = vips_image_get_width(image);
    samples.height = vips_image_get_height(image);
    samples.channels = vips_image_get_bands(image);
    picture.alpha = vips_image_hasalpha(image) != 0;
    picture.colours = samples.channels - (picture.alpha ? 1 : 0);
    const VipsInterpretation kind = vips_image_get_interpretation(image);
    const std::string kindName = vips_enum_nick(VIPS_TYPE_INTERPRETATION, kind);
    const bool known = kind == VIPS_INTERPRETATION_B_W || kind == VIPS_INTERPRETATION_GREY16 ||
                       kind == VIPS_INTERPRETATION_sRGB || kind == VIPS_INTERPRETATION_RGB ||
                       kind == VIPS_INTERPRETATION_RGB16 || kind == VIPS_INTERPRETATION_scRGB ||
                       kind == VIPS_INTERPRETATION_MULTIBAND;
    if (!known || (picture.colours != 1 && picture.colours != 3)) {
        return "has " + std::to_string(samples.channels) + " channels of kind " + kindName +
               "; orv takes grey and RGB, with or without alpha";
    }
    if (!depthOf(vips_image_get_format(image), samples.depth)) {
        return "has samples of an unusual type (" +
               std::string(
                   vips_enum_nick(VIPS_TYPE_BAND_FORMAT, vips_image_get_format(image))) +
               "); orv takes 8 and 16 bits and float";
    }
    if (static_cast<double>(samples.width) * samples.height > kMostPixels) {
        return std::to_string(samples.width) + " x " + std::to_string(samples.height) +
               " pixels are more than the 268 million that orv takes";
    }
    return {};
}

std::string copySamples(VipsImage* image, InterleavedSamples& samples) {
    std::size_t size = 0;
    void* const memory = vips_image_write_to_memory(image, &size);
    if (memory == nullptr) {
        return damaged();
    }
    const std::unique_ptr<void, void (*)(void*)> owner(memory, g_free);
    const auto* const bytes = static_cast<const unsigned char*>(memory);
    samples.bytes.assign(bytes, bytes + size);
    return {};
}

Image imageOver(const InterleavedSamples& samples) {
    const VipsBandFormat format = samples.depth == SampleDepth::Bits8    ? VIPS_FORMAT_UCHAR
                                  : samples.depth == SampleDepth::Bits16 ? VIPS_FORMAT_USHORT
                                                                         : VIPS_FORMAT_FLOAT;
    return Image(vips_image_new_from_memory(samples.bytes.data(), samples.bytes.size(),
                                            samples.width, samples.height, samples.channels,
                                            format));
}

/// Turns the samples upright as an EXIF orientation from 2 to 8 asks.
std::string turnUpright(int orientation, InterleavedSamples& samples) {
    const Image stored = imageOver(samples);
    VipsImage* upright = nullptr;
    if (stored == nullptr) {
        return damaged();
    }
    vips_image_set_int(stored.get(), VIPS_META_ORIENTATION, orientation);
    if (vips_autorot(stored.get(), &upright, nullptr) != 0) {
        return damaged();
    }
    const Image owner(upright);
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

bool isKept(std::string_view field) {
    for (const std::string_view start :
         {VIPS_META_ICC_NAME, VIPS_META_EXIF_NAME, VIPS_META_XMP_NAME, VIPS_META_IPTC_NAME,
          VIPS_META_PHOTOSHOP_NAME, VIPS_META_IMAGEDESCRIPTION, VIPS_META_RESOLUTION_UNIT,
          "exif-ifd", "png-comment-"}) {
        if (field.substr(0, start.size()) == start) {
            return true;
        }
    }
    return false;
}

void* copyField(VipsImage* /*from*/, const char* field, GValue* value, void* to) {
    if (isKept(field)) {
        vips_image_set(static_cast<VipsImage*>(to), field, value);
    }
    return nullptr;
}

void copyMetadata(VipsImage* from, VipsImage* to) {
    vips_image_map(from, copyField, to);
    to->Xres = from->Xres;
    to->Yres = from->Yres;
}

/// The metadata on a picture of one pixel, so that the samples can go.
std::shared_ptr<void> metadataOf(VipsImage* image) {
    VipsImage* point = nullptr;
    if (vips_black(&point, 1, 1, nullptr) != 0) {
        return nullptr;
    }
    VipsImage* holder = nullptr;
    const int failed = vips_copy(point, &holder, nullptr);
    g_object_unref(point);
    if (failed != 0) {
        return nullptr;
    }
    copyMetadata(image, holder);
    return {holder, [](void* object) { g_object_unref(object); }};
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

/// Whether the colour profile, if there is one, describes samples as they will be stored.
bool profileFits(VipsImage* image, bool grey) {
    if (vips_image_get_typeof(image, VIPS_META_ICC_NAME) == 0) {
        return true;
    }
    const void* profile = nullptr;
    std::size_t size = 0;
    if (vips_image_get_blob(image, VIPS_META_ICC_NAME, &profile, &size) != 0) {
        return false;
    }
    // The head of a profile names its colour space; libvips takes grey ones for RGB too.
    constexpr std::size_t kSpaceAt = 16;
    const std::string_view space = grey ? "GRAY" : "RGB ";
    const std::string_view bytes(static_cast<const char*>(profile), size);
    return size > kSpaceAt && bytes.substr(kSpaceAt, space.size()) == space &&
           vips_icc_is_compatible_profile(image, profile, size) != 0;
}

VipsInterpretation kindOf(const Picture& picture) {
    const bool words = picture.samples.depth == SampleDepth::Bits16;
    if (picture.samples.depth == SampleDepth::Float) {
        return picture.colours == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_scRGB;
    }
    if (picture.colours == 1) {
        return words ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    }
    return words ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
}

int save(VipsImage* image, const std::string& path, Format format, SampleDepth depth) {
    const char* const name = path.c_str();
    switch (format) {
        case Format::Png:
            return vips_pngsave(image, name, "compression", kDeflateLevel, "filter",
                                VIPS_FOREIGN_PNG_FILTER_ALL, "bitdepth",
                                depth == SampleDepth::Bits8 ? 8 : 16, nullptr);
        case Format::Jpeg:
            return vips_jpegsave(image, name, "Q", kJpegQuality, "subsample_mode",
                                 VIPS_FOREIGN_SUBSAMPLE_OFF, "optimize_coding", TRUE, nullptr);
        case Format::Tiff:
            return vips_tiffsave(
                image, name, "compression", VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE, "predictor",
                depth == SampleDepth::Float ? VIPS_FOREIGN_TIFF_PREDICTOR_FLOAT
                                            : VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL,
                nullptr);
        case Format::Webp:
            return vips_webpsave(image, name, "Q", kWebpQuality, "smart_subsample", TRUE,
                                 nullptr);
        default:
            return -1;
    }
}

}  // namespace

bool startVips() {
    static const bool started = [] {
        if (VIPS_INIT("orv") != 0) {
            return false;
        }
        vips_block_untrusted_set(TRUE);
        vips_cache_set_max(0);
        // Warnings about odd files would mix with the tool's own lines.
        g_log_set_handler("VIPS",
                          static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_INFO |
                                                      G_LOG_LEVEL_MESSAGE),
                          hearMessage, nullptr);
        return true;
    }();
    return started;
}

bool haveVips() {
    return true;
}

std::string vipsVersion() {
    return "libvips " + std::to_string(vips_version(0)) + "." +
           std::to_string(vips_version(1)) + "." + std::to_string(vips_version(2));
}

std::string readByVips(const std::string& path, Format format, Picture& picture) {
    if (!startVips()) {
        return "libvips can't start (" + vipsReason() + ")";
    }
    profileComplaint = false;
    vips_error_clear();
    Image image = load(path, format);
    if (image == nullptr) {
        return damaged();
    }
    image = withoutCmyk(std::move(image));
    if (image == nullptr) {
        return damaged();
    }
    std::string error = describe(image.get(), picture);
    if (error.empty()) {
        error = copySamples(image.get(), picture.samples);
    }
    if (error.empty() && format == Format::Jpeg && *vips_error_buffer() != '\0') {
        // A warning about the last lines comes too late to fail the read itself.
        error = damaged();
    }
    if (error.empty()) {
        error = floatRefusal(picture.samples);
    }
    if (!error.empty()) {
        return error;
    }
    if (profileComplaint && vips_image_get_typeof(image.get(), VIPS_META_ICC_NAME) == 0) {
        picture.warnings.push_back(path + ": the colour profile is unusable and is left out");
    }
    const int orientation = vips_image_get_orientation(image.get());
    picture.metadata = metadataOf(image.get());
    image.reset();
    if (orientation >= 2 && orientation <= 8) {
        error = turnUpright(orientation, picture.samples);
    }
    return error;
}

std::string writeByVips(const std::string& path, Format format, Picture& picture) {
    if (!startVips()) {
        return "libvips can't start (" + vipsReason() + ")";
    }
    const Image bare = imageOver(picture.samples);
    VipsImage* copy = nullptr;
    if (bare == nullptr ||
        vips_copy(bare.get(), &copy, "interpretation", kindOf(picture), nullptr) != 0) {
        return vipsReason();
    }
    const Image image(copy);
    if (picture.metadata != nullptr) {
        copyMetadata(static_cast<VipsImage*>(picture.metadata.get()), copy);
        // The samples are upright; the EXIF block is brought in line when it is written.
        vips_image_set_int(copy, VIPS_META_ORIENTATION, 1);
    }
    // WebP turns grey into RGB.
    if (!profileFits(copy, picture.colours == 1 && format != Format::Webp)) {
        vips_image_remove(copy, VIPS_META_ICC_NAME);
        picture.warnings.emplace_back(
            "the colour profile doesn't fit the result and is left out");
    }
    return save(copy, path, format, picture.samples.depth) == 0 ? std::string() : vipsReason();
}

}  // namespace orv::cli
