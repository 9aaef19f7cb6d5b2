#include "files/bmp_codec.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace orv::cli {

namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kInfoHeader = 40;
constexpr std::size_t kV4Header = 108;
constexpr std::size_t kLongestHeader = 1024;
constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kAlphaMask = 0xff000000u;

std::uint32_t little(const unsigned char* bytes, int count) {
    std::uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i) {
        value = (value << 8) | bytes[i];
    }
    return value;
}

void putLittle(std::vector<unsigned char>& file, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        file.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
}

/// What the headers tell, checked against the size of the file.
struct Layout {
    int width = 0;
    int height = 0;
    bool topDown = false;
    int bits = 0;
    bool alpha = false;
    std::size_t pixels = 0;   // offset of the first stored row
    std::size_t stride = 0;   // bytes of a stored row
    std::size_t palette = 0;  // offset of the palette
    std::size_t colours = 0;  // entries of the palette
};

std::string masksRefusal(const std::vector<unsigned char>& file, std::size_t header,
                         Layout& layout) {
    const std::size_t masks = kFileHeader + kInfoHeader;
    if (file.size() < masks + 16) {
        return "is cut short";
    }
    if (layout.bits != 32 || little(&file[masks], 4) != 0x00ff0000u ||
        little(&file[masks + 4], 4) != 0x0000ff00u ||
        little(&file[masks + 8], 4) != 0x000000ffu) {
        return "is a BMP with an unusual order of channels";
    }
    layout.alpha = header >= kInfoHeader + 16 && little(&file[masks + 12], 4) == kAlphaMask;
    return {};
}

/// Reads the headers at the start of a file of `fileBytes`.
std::string readLayout(const std::vector<unsigned char>& file, double fileBytes,
                       Layout& layout) {
    if (file.size() < kFileHeader + kInfoHeader) {
        return "is cut short";
    }
    const std::size_t header = little(&file[14], 4);
    const std::uint32_t compression = little(&file[30], 4);
    const auto storedHeight = static_cast<std::int32_t>(little(&file[22], 4));
    layout.width = static_cast<std::int32_t>(little(&file[18], 4));
    layout.topDown = storedHeight < 0;
    layout.bits = static_cast<int>(little(&file[28], 2));
    if (header < kInfoHeader || header > kLongestHeader || layout.width < 1 ||
        storedHeight == 0 || storedHeight == INT32_MIN) {
        return "is a damaged BMP";
    }
    layout.height = layout.topDown ? -storedHeight : storedHeight;
    if (layout.bits != 8 && layout.bits != 24 && layout.bits != 32) {
        return "is a BMP of " + std::to_string(layout.bits) +
               " bits a pixel; 8, 24 and 32 are read";
    }
    if (compression == kBitFields) {
        std::string refusal = masksRefusal(file, header, layout);
        if (!refusal.empty()) {
            return refusal;
        }
    } else if (compression != kUncompressed) {
        return "is a compressed BMP, which isn't read";
    }

    layout.pixels = little(&file[10], 4);
    layout.stride =
        (static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.bits / 8) +
         3) /
        4 * 4;
    layout.palette = kFileHeader + header;
    const std::size_t colours = little(&file[46], 4);
    layout.colours = colours == 0 || colours > 256 ? 256 : colours;
    const double end =
        static_cast<double>(layout.pixels) + static_cast<double>(layout.stride) * layout.height;
    if (end > fileBytes ||
        (layout.bits == 8 && file.size() < layout.palette + layout.colours * 4)) {
        return "is cut short";
    }
    return {};
}

void decodePalette(const std::vector<unsigned char>& file, const Layout& layout,
                   std::array<std::array<unsigned char, 3>, 256>& palette, bool& grey) {
    grey = true;
    for (std::size_t i = 0; i < layout.colours; ++i) {
        const unsigned char* const entry = &file[layout.palette + 4 * i];
        palette[i] = {entry[2], entry[1], entry[0]};
        grey = grey && entry[0] == entry[1] && entry[1] == entry[2];
    }
}

std::vector<unsigned char> encodeHeaders(const Picture& picture, bool grey,
                                         std::size_t pixelBytes, std::size_t stride,
                                         std::size_t offset) {
    const auto width = static_cast<std::size_t>(picture.samples.width);
    const auto height = static_cast<std::size_t>(picture.samples.height);
    const std::size_t header = picture.alpha ? kV4Header : kInfoHeader;
    std::vector<unsigned char> file;
    file.reserve(offset + stride * height);
    file.push_back('B');
    file.push_back('M');
    putLittle(file, static_cast<std::uint32_t>(offset + stride * height), 4);
    putLittle(file, 0, 4);
    putLittle(file, static_cast<std::uint32_t>(offset), 4);
    putLittle(file, static_cast<std::uint32_t>(header), 4);
    putLittle(file, static_cast<std::uint32_t>(width), 4);
    putLittle(file, static_cast<std::uint32_t>(height), 4);
    putLittle(file, 1, 2);
    putLittle(file, static_cast<std::uint32_t>(8 * pixelBytes), 2);
    putLittle(file, picture.alpha ? kBitFields : kUncompressed, 4);
    putLittle(file, static_cast<std::uint32_t>(stride * height), 4);
    putLittle(file, 2835, 4);  // 72 dots an inch, in dots a metre
    putLittle(file, 2835, 4);
    putLittle(file, grey ? 256 : 0, 4);
    putLittle(file, 0, 4);
    if (picture.alpha) {
        for (const std::uint32_t mask : {0x00ff0000u, 0x0000ff00u, 0x000000ffu, kAlphaMask}) {
            putLittle(file, mask, 4);
        }
        putLittle(file, 0x73524742u, 4);  // the colour space is sRGB
        file.resize(kFileHeader + kV4Header);
    }
    for (std::uint32_t i = 0; grey && i < 256; ++i) {
        putLittle(file, i * 0x010101u, 4);
    }

    return file;
}

}  // namespace

std::string bmpHeader(const std::vector<unsigned char>& head, double fileBytes,
                      PictureHeader& header) {
    Layout layout;
    std::string refusal = readLayout(head, fileBytes, layout);
    if (!refusal.empty()) {
        return refusal;
    }
    std::array<std::array<unsigned char, 3>, 256> palette{};
    bool grey = false;
    if (layout.bits == 8) {
        decodePalette(head, layout, palette, grey);
    }
    header.width = layout.width;
    header.height = layout.height;
    header.colours = grey ? 1 : 3;
    header.alpha = layout.alpha;
    header.palette = layout.bits == 8 && !grey;
    constexpr double kMetresPerInch = 0.0254;
    header.dotsPerInch = little(&head[38], 4) * kMetresPerInch;
    return {};
}

std::string decodeBmp(const std::vector<unsigned char>& file, Picture& picture) {
    Layout layout;
    std::string refusal = readLayout(file, static_cast<double>(file.size()), layout);
    if (!refusal.empty()) {
        return refusal;
    }
    std::array<std::array<unsigned char, 3>, 256> palette{};
    bool grey = false;
    if (layout.bits == 8) {
        decodePalette(file, layout, palette, grey);
    }

    picture.colours = grey ? 1 : 3;
    picture.alpha = layout.alpha;
    InterleavedSamples& samples = picture.samples;
    samples.width = layout.width;
    samples.height = layout.height;
    samples.depth = SampleDepth::Bits8;
    samples.channels = picture.colours + (layout.alpha ? 1 : 0);
    const auto width = static_cast<std::size_t>(layout.width);
    const auto channels = static_cast<std::size_t>(samples.channels);
    const auto pixelBytes = static_cast<std::size_t>(layout.bits / 8);
    samples.bytes.resize(width * static_cast<std::size_t>(layout.height) * channels);
    for (int y = 0; y < layout.height; ++y) {
        const auto stored =
            static_cast<std::size_t>(layout.topDown ? y : layout.height - 1 - y);
        const unsigned char* in = file.data() + layout.pixels + stored * layout.stride;
        unsigned char* out =
            samples.bytes.data() + static_cast<std::size_t>(y) * width * channels;
        for (std::size_t x = 0; x < width; ++x, in += pixelBytes, out += channels) {
            if (layout.bits == 8) {
                std::memcpy(out, palette[in[0]].data(), grey ? 1 : 3);
                continue;
            }
            out[0] = in[2];
            out[1] = in[1];
            out[2] = in[0];
            if (layout.alpha) {
                out[3] = in[3];
            }
        }
    }
    return {};
}

std::vector<unsigned char> encodeBmp(const Picture& picture) {
    const InterleavedSamples& samples = picture.samples;
    const bool grey = picture.colours == 1 && !picture.alpha;
    const std::size_t pixelBytes = grey ? 1 : (picture.alpha ? 4 : 3);
    const auto width = static_cast<std::size_t>(samples.width);
    const auto height = static_cast<std::size_t>(samples.height);
    const auto channels = static_cast<std::size_t>(samples.channels);
    const std::size_t stride = (width * pixelBytes + 3) / 4 * 4;
    const std::size_t header = picture.alpha ? kV4Header : kInfoHeader;
    const std::size_t offset = kFileHeader + header + (grey ? 1024 : 0);

    std::vector<unsigned char> file = encodeHeaders(picture, grey, pixelBytes, stride, offset);
    file.resize(offset + stride * height);
    for (std::size_t y = 0; y < height; ++y) {
        const unsigned char* in = samples.bytes.data() + (height - 1 - y) * width * channels;
        unsigned char* out = file.data() + offset + y * stride;
        for (std::size_t x = 0; x < width; ++x, in += channels, out += pixelBytes) {
            if (grey) {
                out[0] = in[0];
                continue;
            }
            const std::size_t step = picture.colours == 3 ? 1 : 0;
            out[0] = in[2 * step];
            out[1] = in[step];
            out[2] = in[0];
            if (picture.alpha) {
                out[3] = in[channels - 1];
            }
        }
    }
    return file;
}

}  // namespace orv::cli
