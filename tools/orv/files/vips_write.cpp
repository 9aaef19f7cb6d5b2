#include <cstddef>

#include "files/exif_block.h"
#include "files/exif_container.h"
#include "files/library_codec.h"
#include "files/vips_metadata.h"
#include "files/vips_support.h"

namespace orv::cli {

namespace {

constexpr int kDeflateLevel = 4;
/// A WebP of this quality is lossless.
constexpr int kLossless = 100;

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

int save(VipsImage* image, VipsTarget* target, const WriteSettings& settings,
         SampleDepth depth) {
    switch (settings.format->format) {
        case Format::Png:
            return vips_pngsave_target(image, target, "compression", kDeflateLevel, "filter",
                                       VIPS_FOREIGN_PNG_FILTER_ALL, "bitdepth",
                                       depth == SampleDepth::Bits8 ? 8 : 16, nullptr);
        case Format::Jpeg:
            return vips_jpegsave_target(image, target, "Q", settings.quality, "subsample_mode",
                                        VIPS_FOREIGN_SUBSAMPLE_OFF, "optimize_coding", TRUE,
                                        nullptr);
        case Format::Tiff:
            return vips_tiffsave_target(image, target, "compression",
                                        VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE, "predictor",
                                        depth == SampleDepth::Float
                                            ? VIPS_FOREIGN_TIFF_PREDICTOR_FLOAT
                                            : VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL,
                                        nullptr);
        case Format::Webp:
            return vips_webpsave_target(image, target, "Q", settings.quality, "smart_subsample",
                                        TRUE, "lossless",
                                        settings.quality >= kLossless ? TRUE : FALSE, nullptr);
        default:
            return -1;
    }
}

std::string saveToMemory(VipsImage* image, const WriteSettings& settings, SampleDepth depth,
                         std::vector<unsigned char>& bytes) {
    const std::unique_ptr<VipsTarget, VipsUnref> target(vips_target_new_to_memory());
    if (target == nullptr || save(image, target.get(), settings, depth) != 0) {
        return vipsReason();
    }
    VipsBlob* blob = nullptr;
    g_object_get(target.get(), "blob", &blob, nullptr);
    if (blob == nullptr) {
        return vipsReason();
    }
    std::size_t size = 0;
    const auto* const data = static_cast<const unsigned char*>(vips_blob_get(blob, &size));
    bytes.assign(data, data + size);
    vips_area_unref(VIPS_AREA(blob));
    return {};
}

/// Puts the EXIF block of the picture into its file, or leaves none there.
void finishExif(const WriteSettings& settings, Picture& picture,
                std::vector<unsigned char>& bytes) {
    std::string block;
    const bool kept = settings.strip == Strip::None || settings.strip == Strip::Gps;
    if (kept && picture.metadata != nullptr) {
        const std::string_view before = exifOf(static_cast<VipsImage*>(picture.metadata.get()));
        block = exifForResult(before, picture.samples.width, picture.samples.height,
                              settings.strip == Strip::Gps);
        if (block.empty() && !before.empty()) {
            picture.warnings.emplace_back("the EXIF block is damaged and is left out");
        }
    }
    if (!putExif(settings.format->format, block, picture, bytes)) {
        picture.warnings.emplace_back(settings.format->format == Format::Tiff
                                          ? "orv writes no EXIF into TIFF; it is left out"
                                          : "the EXIF block is too large and is left out");
    }
}

}  // namespace

std::string profileOf(const Picture& picture) {
    return picture.metadata == nullptr
               ? std::string()
               : profileNameOf(static_cast<VipsImage*>(picture.metadata.get()));
}

std::string encodeByLibrary(const WriteSettings& settings, Picture& picture,
                            std::vector<unsigned char>& bytes) {
    std::string error = startVips();
    if (!error.empty()) {
        return error;
    }
    profileComplaint();
    const VipsPicture bare = imageOver(picture.samples);
    VipsImage* copy = nullptr;
    if (bare == nullptr ||
        vips_copy(bare.get(), &copy, "interpretation", kindOf(picture), nullptr) != 0) {
        return vipsReason();
    }
    const VipsPicture image(copy);
    if (picture.metadata != nullptr) {
        copyMetadata(static_cast<VipsImage*>(picture.metadata.get()), copy, settings.strip);
        // The samples are upright.
        vips_image_set_int(copy, VIPS_META_ORIENTATION, 1);
    }
    // WebP turns grey into RGB.
    if (!profileFits(copy, picture.colours == 1 && settings.format->format != Format::Webp)) {
        vips_image_remove(copy, VIPS_META_ICC_NAME);
        picture.warnings.emplace_back(
            "the colour profile doesn't fit the result and is left out");
    }
    // libvips would compress it, which readers of XMP don't expect.
    const std::string packet =
        settings.format->format == Format::Png ? takeXmp(copy) : std::string();
    error = saveToMemory(copy, settings, picture.samples.depth, bytes);
    if (error.empty()) {
        if (profileComplaint()) {
            picture.warnings.emplace_back("the colour profile is unusable and is left out");
        }
        const auto [across, down] = resolutionOf(copy);
        putResolution(settings.format->format, across, down, bytes);
        if (!packet.empty()) {
            putXmpIntoPng(packet, bytes);
        }
        finishExif(settings, picture, bytes);
    }
    return error;
}

}  // namespace orv::cli
