#include "files/netpbm_codec.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orv::cli {

namespace {

bool isSpace(unsigned char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Reads the next number of the header; false when there is none.
bool readNumber(const std::vector<unsigned char>& file, std::size_t& at, int& value) {
    while (at < file.size() && (isSpace(file[at]) || file[at] == '#')) {
        if (file[at] == '#') {
            while (at < file.size() && file[at] != '\n') {
                ++at;
            }
        } else {
            ++at;
        }
    }
    std::int64_t number = 0;
    const std::size_t first = at;
    for (; at < file.size() && file[at] >= '0' && file[at] <= '9'; ++at) {
        number = number * 10 + (file[at] - '0');
        if (number > INT32_MAX) {
            return false;
        }
    }
    value = static_cast<int>(number);
    return at > first;
}

/// What the header tells, checked against the size of the file.
struct Layout {
    int width = 0;
    int height = 0;
    int white = 0;
    int channels = 0;
    std::size_t pixels = 0;    // offset of the first row
    std::size_t rowBytes = 0;  // bytes of a row
};

std::string readLayout(const std::vector<unsigned char>& file, double fileBytes,
                       Layout& layout) {
    std::size_t at = 2;
    if (!readNumber(file, at, layout.width) || !readNumber(file, at, layout.height) ||
        !readNumber(file, at, layout.white) || at >= file.size() || !isSpace(file[at]) ||
        layout.width < 1 || layout.height < 1) {
        return "is a damaged PPM or PGM";
    }
    layout.pixels = at + 1;
    if (layout.white != 255 && layout.white != 65535) {
        return "has a white of " + std::to_string(layout.white) + "; 255 and 65535 are read";
    }
    layout.channels = file[1] == '6' ? 3 : 1;
    layout.rowBytes = static_cast<std::size_t>(layout.width) *
                      static_cast<std::size_t>(layout.channels) *
                      (layout.white == 255 ? 1u : 2u);
    const double end = static_cast<double>(layout.pixels) +
                       static_cast<double>(layout.rowBytes) * layout.height;
    return end > fileBytes ? "is cut short" : std::string();
}

}  // namespace

std::string netpbmHeader(const std::vector<unsigned char>& head, double fileBytes,
                         PictureHeader& header) {
    Layout layout;
    std::string refusal = readLayout(head, fileBytes, layout);
    header.width = layout.width;
    header.height = layout.height;
    header.colours = layout.channels;
    header.depth = layout.white == 255 ? SampleDepth::Bits8 : SampleDepth::Bits16;
    return refusal;
}

std::string decodeNetpbm(const std::vector<unsigned char>& file, Picture& picture) {
    Layout layout;
    std::string refusal = readLayout(file, static_cast<double>(file.size()), layout);
    if (!refusal.empty()) {
        return refusal;
    }
    picture.colours = layout.channels;
    picture.alpha = false;
    InterleavedSamples& samples = picture.samples;
    samples.width = layout.width;
    samples.height = layout.height;
    samples.channels = layout.channels;
    samples.depth = layout.white == 255 ? SampleDepth::Bits8 : SampleDepth::Bits16;
    const std::size_t at = layout.pixels;
    const std::size_t total = layout.rowBytes * static_cast<std::size_t>(layout.height);
    samples.bytes.resize(total);
    std::memcpy(samples.bytes.data(), file.data() + at, total);
    for (std::size_t i = 0; samples.depth == SampleDepth::Bits16 && i < total; i += 2) {
        const auto word = static_cast<std::uint16_t>(file[at + i] << 8 | file[at + i + 1]);
        std::memcpy(&samples.bytes[i], &word, sizeof word);
    }
    return {};
}

std::vector<unsigned char> encodeNetpbm(const Picture& picture, bool asColour) {
    const InterleavedSamples& samples = picture.samples;
    const bool words = samples.depth == SampleDepth::Bits16;
    const std::string header =
        std::string(asColour ? "P6" : "P5") + "\n" + std::to_string(samples.width) + " " +
        std::to_string(samples.height) + "\n" + (words ? "65535" : "255") + "\n";
    std::vector<unsigned char> file(header.begin(), header.end());
    const std::size_t sampleBytes = bytesOf(samples.depth);
    const int copies = asColour && samples.channels == 1 ? 3 : 1;
    file.reserve(file.size() + samples.bytes.size() * static_cast<std::size_t>(copies));
    for (std::size_t i = 0; i < samples.bytes.size(); i += sampleBytes) {
        for (int copy = 0; copy < copies; ++copy) {
            if (words) {
                std::uint16_t word = 0;
                std::memcpy(&word, &samples.bytes[i], sizeof word);
                file.push_back(static_cast<unsigned char>(word >> 8));
                file.push_back(static_cast<unsigned char>(word & 0xff));
            } else {
                file.push_back(samples.bytes[i]);
            }
        }
    }
    return file;
}

}  // namespace orv::cli
