#include <vips/vips.h>

#include <memory>

#include "batch/thumbnail.h"
#include "files/image_file.h"
#include "files/vips_support.h"

namespace orv::cli {

namespace {

constexpr int kQuality = 80;

/// By the loaders of libvips, which decode JPEG and WebP at a fraction of their size.
VipsPicture smallFromFile(const std::string& path, int side) {
    // A name as libvips takes it may hold options in brackets; a source is the file alone.
    const std::unique_ptr<VipsSource, VipsUnref> source(
        vips_source_new_from_file(path.c_str()));
    VipsImage* small = nullptr;
    if (source == nullptr) {
        return nullptr;
    }
    const int failed = vips_thumbnail_source(source.get(), &small, side, "height", side, "size",
                                             VIPS_SIZE_DOWN, "export_profile", "srgb", nullptr);
    return VipsPicture(failed != 0 ? nullptr : small);
}

/// By the tool's own readers, for what libvips doesn't read.
VipsPicture smallFromSamples(const std::string& path, int side) {
    Picture picture;
    if (!readPicture(path, picture).empty() || picture.samples.depth != SampleDepth::Bits8) {
        return nullptr;
    }
    const VipsPicture whole = imageOver(picture.samples);
    VipsImage* small = nullptr;
    if (whole == nullptr) {
        return nullptr;
    }
    const int failed = vips_thumbnail_image(whole.get(), &small, side, "height", side, "size",
                                            VIPS_SIZE_DOWN, nullptr);
    const VipsPicture shrunk(failed != 0 ? nullptr : small);
    // The samples go with this function.
    return VipsPicture(shrunk == nullptr ? nullptr : vips_image_copy_memory(shrunk.get()));
}

}  // namespace

bool makeThumbnail(const std::string& path, int side, std::vector<unsigned char>& jpeg) {
    if (!startVips().empty()) {
        return false;
    }
    VipsPicture image = smallFromFile(path, side);
    if (image == nullptr) {
        image = smallFromSamples(path, side);
    }
    void* memory = nullptr;
    std::size_t size = 0;
    const bool made = image != nullptr &&
                      vips_jpegsave_buffer(image.get(), &memory, &size, "Q", kQuality, "strip",
                                           TRUE, "optimize_coding", TRUE, nullptr) == 0;
    vips_error_clear();
    if (made) {
        const auto* const bytes = static_cast<const unsigned char*>(memory);
        jpeg.assign(bytes, bytes + size);
        g_free(memory);
    }
    return made;
}

}  // namespace orv::cli
