#include "files/vips_support.h"

#include <vips/vector.h>

#include <atomic>
#include <string_view>

#include "files/library_codec.h"

namespace orv::cli {

namespace {

/// A loader may complain in any thread.
constinit std::atomic<bool> complained = false;

/// Keeps libvips's own lines from the user, but for what a loader leaves out.
void hearMessage(const gchar* /*domain*/, GLogLevelFlags /*level*/, const gchar* message,
                 gpointer /*data*/) {
    if (std::string_view(message).substr(0, 5) == "iCCP:") {
        complained = true;
    }
}

}  // namespace

bool haveLibrary() {
    return true;
}

std::string libraryVersion() {
    return "libvips " + std::to_string(vips_version(0)) + "." +
           std::to_string(vips_version(1)) + "." + std::to_string(vips_version(2));
}

bool libraryCodes(Format format) {
    return formatEntry(format)->needsLibrary;
}

std::string codingLimit() {
    return "takes what libvips does";
}

std::string codingNotes() {
    return {};
}

std::string startVips() {
    static const bool started = [] {
        if (VIPS_INIT("orv") != 0) {
            return false;
        }
        vips_block_untrusted_set(TRUE);
        vips_cache_set_max(0);
        vips_vector_set_enabled(FALSE);
        // Warnings about odd files would mix with the tool's own lines.
        g_log_set_handler("VIPS",
                          static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_INFO |
                                                      G_LOG_LEVEL_MESSAGE),
                          hearMessage, nullptr);
        return true;
    }();
    return started ? std::string() : "libvips can't start (" + vipsReason() + ")";
}

std::string vipsReason() {
    std::string text(vips_error_buffer());
    vips_error_clear();
    const std::size_t end = text.find('\n');
    return end == std::string::npos ? text : text.substr(0, end);
}

std::string vipsDamage() {
    // The others say no more than that a read failed.
    constexpr std::string_view kJpeg = "VipsJpeg: ";
    const std::string reason = vipsReason();
    std::string text = "is damaged or cut short";
    if (reason.compare(0, kJpeg.size(), kJpeg) == 0) {
        text += " (" + reason.substr(kJpeg.size()) + ")";
    }
    return text;
}

bool profileComplaint() {
    return complained.exchange(false);
}

VipsPicture imageOver(const InterleavedSamples& samples) {
    const VipsBandFormat format = samples.depth == SampleDepth::Bits8    ? VIPS_FORMAT_UCHAR
                                  : samples.depth == SampleDepth::Bits16 ? VIPS_FORMAT_USHORT
                                                                         : VIPS_FORMAT_FLOAT;
    return VipsPicture(vips_image_new_from_memory(samples.bytes.data(), samples.bytes.size(),
                                                  samples.width, samples.height,
                                                  samples.channels, format));
}

std::string copySamples(VipsImage* image, InterleavedSamples& samples) {
    std::size_t size = 0;
    void* const memory = vips_image_write_to_memory(image, &size);
    if (memory == nullptr) {
        return vipsDamage();
    }
    const std::unique_ptr<void, void (*)(void*)> owner(memory, g_free);
    const auto* const bytes = static_cast<const unsigned char*>(memory);
    samples.bytes.assign(bytes, bytes + size);
    return {};
}

bool hasField(VipsImage* image, const char* field) {
    return vips_image_get_typeof(image, field) != 0;
}

}  // namespace orv::cli
