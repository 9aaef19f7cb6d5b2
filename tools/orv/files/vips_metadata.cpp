#include "files/vips_metadata.h"

#include <string>
#include <string_view>

#include "files/exif_block.h"
#include "files/icc_profile.h"
#include "files/vips_support.h"
#include "files/xmp_packet.h"

namespace orv::cli {

namespace {

constexpr std::string_view kComment = "png-comment-";

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool isKept(std::string_view field) {
    for (const std::string_view name :
         {std::string_view(VIPS_META_ICC_NAME), std::string_view(VIPS_META_XMP_NAME),
          std::string_view(VIPS_META_IPTC_NAME), std::string_view(VIPS_META_PHOTOSHOP_NAME),
          std::string_view(VIPS_META_IMAGEDESCRIPTION),
          std::string_view(VIPS_META_RESOLUTION_UNIT)}) {
        if (field == name) {
            return true;
        }
    }
    return startsWith(field, kComment);
}

/// The bytes of a field, empty when it holds none.
std::string_view bytesOfField(const GValue* value) {
    std::size_t size = 0;
    if (G_VALUE_TYPE(value) == VIPS_TYPE_BLOB) {
        const void* const data = vips_value_get_blob(value, &size);
        return {static_cast<const char*>(data), data == nullptr ? 0 : size};
    }
    if (G_VALUE_TYPE(value) == VIPS_TYPE_REF_STRING) {
        const char* const text = vips_value_get_ref_string(value, &size);
        return {text, text == nullptr ? 0 : size};
    }
    return {};
}

/// Whether a text of a PNG is EXIF, XMP or IPTC written in digits.
bool isRawProfile(std::string_view field) {
    return lowerCase(field).find("raw profile type") != std::string::npos;
}

bool isStripped(std::string_view field, const GValue* value, Strip strip) {
    const bool comment = startsWith(field, kComment);
    switch (strip) {
        case Strip::None:
            return false;
        case Strip::Gps:
            return (comment && isRawProfile(field)) ||
                   (field != VIPS_META_ICC_NAME && tellsPlace(bytesOfField(value)));
        case Strip::Exif:
            return field == VIPS_META_XMP_NAME || field == VIPS_META_IPTC_NAME ||
                   field == VIPS_META_PHOTOSHOP_NAME || (comment && isRawProfile(field));
        case Strip::All:
            break;
    }
    return field != VIPS_META_ICC_NAME && field != VIPS_META_RESOLUTION_UNIT;
}

struct Copying {
    VipsImage* to;
    Strip strip;
};

void* copyField(VipsImage* /*from*/, const char* field, GValue* value, void* data) {
    const auto* const copying = static_cast<const Copying*>(data);
    if (isKept(field) && !isStripped(field, value, copying->strip)) {
        vips_image_set(copying->to, field, value);
        if (std::string_view(field) == VIPS_META_XMP_NAME) {
            const std::string packet = uprightXmp(bytesOfField(value));
            vips_image_set_blob_copy(copying->to, field, packet.data(), packet.size());
        }
    }
    return nullptr;
}

/// A field's bytes, empty when there is none.
std::string_view blob(VipsImage* image, const char* field) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (!hasField(image, field) || vips_image_get_blob(image, field, &data, &size) != 0) {
        return {};
    }
    return {static_cast<const char*>(data), size};
}

}  // namespace

void copyMetadata(VipsImage* from, VipsImage* to, Strip strip) {
    Copying copying{to, strip};
    vips_image_map(from, copyField, &copying);
    to->Xres = from->Xres;
    to->Yres = from->Yres;
}

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
    copyMetadata(image, holder, Strip::None);
    setExif(holder, exifOf(image));
    return {holder, [](void* object) { g_object_unref(object); }};
}

std::string_view exifOf(VipsImage* image) {
    return blob(image, VIPS_META_EXIF_NAME);
}

std::string takeXmp(VipsImage* image) {
    std::string packet(blob(image, VIPS_META_XMP_NAME));
    vips_image_remove(image, VIPS_META_XMP_NAME);
    return packet;
}

void setExif(VipsImage* image, std::string_view block) {
    if (!block.empty()) {
        vips_image_set_blob_copy(image, VIPS_META_EXIF_NAME, block.data(), block.size());
    }
}

bool profileFits(VipsImage* image, bool grey) {
    const std::string_view profile = blob(image, VIPS_META_ICC_NAME);
    if (profile.empty()) {
        return !hasField(image, VIPS_META_ICC_NAME);
    }
    // libvips takes grey ones for RGB too.
    return profileSpace(profile) == (grey ? "GRAY" : "RGB ") &&
           vips_icc_is_compatible_profile(image, profile.data(), profile.size()) != 0;
}

std::pair<double, double> resolutionOf(VipsImage* image) {
    // Where a file tells no resolution, libvips says one pixel a millimetre.
    if (!hasField(image, VIPS_META_RESOLUTION_UNIT) && image->Xres == 1.0) {
        return {0.0, 0.0};
    }
    constexpr double kMillimetresPerInch = 25.4;
    return {image->Xres * kMillimetresPerInch, image->Yres * kMillimetresPerInch};
}

std::string profileNameOf(VipsImage* image) {
    return profileName(blob(image, VIPS_META_ICC_NAME));
}

void describeMetadata(VipsImage* image, PictureHeader& header) {
    header.profile = profileNameOf(image);
    header.exif = hasField(image, VIPS_META_EXIF_NAME);
    header.gps =
        tellsPlace(blob(image, VIPS_META_XMP_NAME)) || hasField(image, "exif-ifd3-GPSLatitude");
    header.xmp = hasField(image, VIPS_META_XMP_NAME);
    header.iptc =
        hasField(image, VIPS_META_IPTC_NAME) || hasField(image, VIPS_META_PHOTOSHOP_NAME);
    header.dotsPerInch = resolutionOf(image).first;
}

}  // namespace orv::cli
