#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "orv/orv.h"
#include "support/photo_bytes.h"

namespace orv::test {

struct HandleDeleter {
    void operator()(void* image) const { DestroyORVImage(image); }
};

/// An image handle that is destroyed with its scope.
using Handle = std::unique_ptr<void, HandleDeleter>;

/// The header of a 24-bit bitmap.
inline BITMAPINFOHEADER bitmapHeader(int width, int height, int bitCount = 24) {
    BITMAPINFOHEADER header;
    std::memset(&header, 0, sizeof header);
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<unsigned short>(bitCount);
    return header;
}

/// Packed rows padded to a multiple of 4 bytes, the padding filled with 0xEE.
inline std::vector<unsigned char> paddedRows(const std::vector<unsigned char>& packed,
                                             int width, int height) {
    const std::size_t row = 3U * static_cast<std::size_t>(width);
    const std::size_t stride = (row + 3U) / 4U * 4U;
    std::vector<unsigned char> rows(stride * static_cast<std::size_t>(height), 0xEE);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        std::memcpy(rows.data() + y * stride, packed.data() + y * row, row);
    }
    return rows;
}

/// A handle made from packed pixels the way a host makes one.
inline Handle handleOf(const std::vector<unsigned char>& packed, int width, int height) {
    const BITMAPINFOHEADER header = bitmapHeader(width, height);
    const std::vector<unsigned char> rows = paddedRows(packed, width, height);
    return Handle(ConvertORVImage(&header, rows.data()));
}

/// A handle of the synthetic photo.
inline Handle photoHandle(int width, int height, std::uint32_t seed) {
    return handleOf(photoBytes(width, height, seed), width, height);
}

/// The packed pixels of a handle.
inline std::vector<unsigned char> pixelsOf(const Handle& image) {
    int width = 0;
    int height = 0;
    GetORVImageInfo(image.get(), &width, &height);
    const unsigned char* data = GetORVImageData(image.get());
    return std::vector<unsigned char>(
        data, data + 3U * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

}  // namespace orv::test
