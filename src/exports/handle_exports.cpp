#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "exports/call_frame.h"
#include "exports/progress_window.h"

namespace orv {

namespace {

constexpr int kBytesPerPixel = 3;
constexpr int kBitsPerPixel = 24;

struct BitmapSize {
    int width;
    int height;
};

// Reads field by field through bytes: hosts pass headers that lie anywhere in a file's memory.
template <typename Field>
Field fieldAt(const BITMAPINFOHEADER* header, std::size_t offset) {
    Field value;
    std::memcpy(&value, reinterpret_cast<const unsigned char*>(header) + offset, sizeof value);
    return value;
}

// Whether the pixels of a bitmap, with the room that the image adds, can be counted in bytes.
bool sizeIsUsable(BitmapSize size) {
    constexpr std::size_t kAlignmentRoom = 32;
    if (size.width < 1 || size.height < 1) {
        return false;
    }
    const std::size_t most = PTRDIFF_MAX - kAlignmentRoom;
    return static_cast<std::size_t>(size.width) <=
           most / kBytesPerPixel / static_cast<std::size_t>(size.height);
}

// The bytes of a stored row: a multiple of 4 as soon as the width is not one.
std::size_t storedRowBytes(int width) {
    const std::size_t columns = static_cast<std::size_t>(width);
    if (columns % 4 == 0) {
        return columns * kBytesPerPixel;
    }
    return (columns + 1) * kBytesPerPixel / 4 * 4;
}

std::unique_ptr<DiscreteImage> imageFromBitmap(BitmapSize size, const unsigned char* pixels) {
    const std::size_t rowBytes = static_cast<std::size_t>(size.width) * kBytesPerPixel;
    const std::size_t stride = storedRowBytes(size.width);
    if (stride == rowBytes) {
        return std::make_unique<RgbDiscreteImage>(size.width, size.height, pixels);
    }
    auto image = std::make_unique<RgbDiscreteImage>(size.width, size.height);
    unsigned char* packed = image->data();
    for (int y = 0; y < size.height; ++y) {
        const std::size_t row = static_cast<std::size_t>(y);
        std::memcpy(packed + row * rowBytes, pixels + row * stride, rowBytes);
    }
    return image;
}

}  // namespace

}  // namespace orv

extern "C" {

void SetORVCallBack(ORVCallBack callback) {
    orv::progressWindow() = orv::ProgressWindow{callback, 0, 100};
}

void* ConvertORVImage(const BITMAPINFOHEADER* header, const unsigned char* pixels) {
    if (header == nullptr || pixels == nullptr) {
        return nullptr;
    }
    const auto bitCount =
        orv::fieldAt<std::uint16_t>(header, offsetof(BITMAPINFOHEADER, biBitCount));
    const orv::BitmapSize size{
        orv::fieldAt<std::int32_t>(header, offsetof(BITMAPINFOHEADER, biWidth)),
        orv::fieldAt<std::int32_t>(header, offsetof(BITMAPINFOHEADER, biHeight))};
    if (bitCount != orv::kBitsPerPixel || !orv::sizeIsUsable(size)) {
        return nullptr;
    }
    return orv::callFrame([&] { return orv::imageFromBitmap(size, pixels); });
}

void DestroyORVImage(void* image) {
    delete orv::imageOf(image);
}

void GetORVImageInfo(void* image, int* width, int* height) {
    if (image == nullptr || width == nullptr || height == nullptr) {
        return;
    }
    *width = orv::imageOf(image)->width();
    *height = orv::imageOf(image)->height();
}

unsigned char* GetORVImageData(void* image) {
    return image != nullptr ? orv::imageOf(image)->data() : nullptr;
}

}  // extern "C"
