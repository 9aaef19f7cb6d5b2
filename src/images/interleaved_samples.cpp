#include "images/interleaved_samples.h"

#include <algorithm>

namespace orv {

namespace {

template <class Sample>
SampleGrid<Sample> covered(SampleGrid<Sample> grid, const FloatImage& plane) {
    grid.width = std::min(grid.width, plane.width());
    grid.height = std::min(grid.height, plane.height());
    return grid;
}

std::size_t columnStride(const FloatImage& plane) {
    return static_cast<std::size_t>(plane.height());
}

}  // namespace

void readInterleaved(const SampleGrid<const unsigned char>& grid, float factor,
                     FloatImage& plane) {
    pixelKernels().bytes.read(covered(grid, plane), factor, plane.data(), columnStride(plane));
}

void readInterleaved(const SampleGrid<const unsigned short>& grid, float factor,
                     FloatImage& plane) {
    pixelKernels().words.read(covered(grid, plane), factor, plane.data(), columnStride(plane));
}

void readInterleaved(const SampleGrid<const float>& grid, float factor, FloatImage& plane) {
    pixelKernels().floats.read(covered(grid, plane), factor, plane.data(), columnStride(plane));
}

void writeInterleaved(const FloatImage& plane, float factor, float maxValue,
                      const SampleGrid<unsigned char>& grid) {
    pixelKernels().bytes.write(plane.data(), columnStride(plane), factor, maxValue,
                               covered(grid, plane));
}

void writeInterleaved(const FloatImage& plane, float factor, float maxValue,
                      const SampleGrid<unsigned short>& grid) {
    pixelKernels().words.write(plane.data(), columnStride(plane), factor, maxValue,
                               covered(grid, plane));
}

void writeInterleaved(const FloatImage& plane, float factor, float maxValue,
                      const SampleGrid<float>& grid) {
    pixelKernels().floats.write(plane.data(), columnStride(plane), factor, maxValue,
                                covered(grid, plane));
}

}  // namespace orv
