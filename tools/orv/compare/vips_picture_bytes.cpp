#include <vips/vips.h>

#include <cstddef>
#include <string_view>

#include "compare/picture_bytes.h"
#include "vips_file.h"

namespace orv::cli {

namespace {

constexpr int kJpegQuality = 92;
constexpr int kDeflateLevel = 4;

struct Unref {
    void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

std::string reason() {
    std::string text(vips_error_buffer());
    vips_error_clear();
    return text.substr(0, text.find('\n'));
}

/// The picture as libvips sees it, with its profile.
Image imageOf(const Picture& picture) {
    const InterleavedSamples& samples = picture.samples;
    const Image bare(vips_image_new_from_memory(samples.bytes.data(), samples.bytes.size(),
                                                samples.width, samples.height, samples.channels,
                                                VIPS_FORMAT_UCHAR));
    VipsImage* copy = nullptr;
    const VipsInterpretation kind =
        picture.colours == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB;
    if (bare == nullptr || vips_copy(bare.get(), &copy, "interpretation", kind, nullptr) != 0) {
        return nullptr;
    }
    const void* profile = nullptr;
    std::size_t size = 0;
    auto* const holder = static_cast<VipsImage*>(picture.metadata.get());
    if (holder != nullptr &&
        vips_image_get_blob(holder, VIPS_META_ICC_NAME, &profile, &size) == 0) {
        vips_image_set_blob_copy(copy, VIPS_META_ICC_NAME, profile, size);
    }
    return Image(copy);
}

}  // namespace

bool havePhotoCoding() {
    return true;
}

std::string pageType(PageCoding coding) {
    return coding == PageCoding::Photo ? "image/jpeg" : "image/png";
}

std::string encodeForPage(const Picture& picture, PageCoding coding,
                          std::vector<unsigned char>& bytes) {
    if (!startVips()) {
        return "libvips can't start (" + reason() + ")";
    }
    const Image image = imageOf(picture);
    if (image == nullptr) {
        return reason();
    }
    void* memory = nullptr;
    std::size_t size = 0;
    const int failed =
        coding == PageCoding::Photo
            ? vips_jpegsave_buffer(image.get(), &memory, &size, "Q", kJpegQuality,
                                   "subsample_mode", VIPS_FOREIGN_SUBSAMPLE_OFF,
                                   "optimize_coding", TRUE, nullptr)
            : vips_pngsave_buffer(image.get(), &memory, &size, "compression", kDeflateLevel,
                                  "filter", VIPS_FOREIGN_PNG_FILTER_ALL, "bitdepth", 8,
                                  nullptr);
    if (failed != 0) {
        return reason();
    }
    const std::unique_ptr<void, void (*)(void*)> owner(memory, g_free);
    const auto* const first = static_cast<const unsigned char*>(memory);
    bytes.assign(first, first + size);
    return {};
}

std::shared_ptr<void> profileAlone(const std::shared_ptr<void>& metadata, bool grey) {
    auto* const from = static_cast<VipsImage*>(metadata.get());
    const void* profile = nullptr;
    std::size_t size = 0;
    if (from == nullptr || vips_image_get_typeof(from, VIPS_META_ICC_NAME) == 0 ||
        vips_image_get_blob(from, VIPS_META_ICC_NAME, &profile, &size) != 0) {
        return nullptr;
    }
    // The head of a profile names its colour space.
    constexpr std::size_t kSpaceAt = 16;
    const std::string_view bytes(static_cast<const char*>(profile), size);
    if (size <= kSpaceAt || bytes.substr(kSpaceAt, 4) != (grey ? "GRAY" : "RGB ")) {
        return nullptr;
    }
    VipsImage* holder = nullptr;
    if (vips_black(&holder, 1, 1, nullptr) != 0) {
        vips_error_clear();
        return nullptr;
    }
    VipsImage* copy = nullptr;
    const int failed = vips_copy(holder, &copy, nullptr);
    g_object_unref(holder);
    if (failed != 0) {
        vips_error_clear();
        return nullptr;
    }
    vips_image_set_blob_copy(copy, VIPS_META_ICC_NAME, profile, size);
    return {copy, [](void* object) { g_object_unref(object); }};
}

}  // namespace orv::cli
