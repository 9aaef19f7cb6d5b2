#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace orv::test {

/// The photos of tests/data.
inline constexpr std::array<const char*, 3> kPhotoCrops = {"astronaut", "chelsea", "coffee"};

/// Packed 24-bit pixels with their size; width 0 when the file could not be read.
struct PhotoCrop {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;
};

/// Reads one of kPhotoCrops.
inline PhotoCrop photoCrop(const char* name) {
    PhotoCrop crop;
    const std::string path = std::string(ORV_SOURCE_DIR) + "/tests/data/" + name + ".ppm";
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return crop;
    }
    int width = 0;
    int height = 0;
    if (std::fscanf(file, "P6 %d %d 255%*c", &width, &height) == 2) {
        crop.bytes.resize(3U * static_cast<std::size_t>(width) *
                          static_cast<std::size_t>(height));
        if (std::fread(crop.bytes.data(), 1, crop.bytes.size(), file) == crop.bytes.size()) {
            crop.width = width;
            crop.height = height;
        }
    }
    std::fclose(file);
    return crop;
}

}  // namespace orv::test
