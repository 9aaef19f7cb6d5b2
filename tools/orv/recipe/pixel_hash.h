#pragma once

#include <string>
#include <string_view>

#include "methods/interleaved_planes.h"
#include "recipe/recipe.h"

namespace orv::cli {

/// What every pixelHash() begins with.
inline constexpr std::string_view kPixelHashPrefix = "xxh3-128:";

/// A hash of the pixels of a picture, "xxh3-128:" and 32 hexadecimal digits.
///
///     XXH3 128 with seed 0 of
///         width, height, channels, bits   four numbers of 32 bits
///         samples                         row after row, channels side by side, without a gap
///     all of them with their lowest byte first, whatever the machine
///
/// The digits stand in the order in which `xxhsum -H2` prints them. Metadata, colour profile and
/// file format don't count.
///
/// Cost:    one pass over the samples, at the speed of memory.
std::string pixelHash(const InterleavedSamples& samples);

/// Whether a text has the form of a pixelHash().
bool isPixelHash(std::string_view text);

/// What a recipe remembers of a picture, its hash included.
PictureFacts pictureFacts(const std::string& file, const InterleavedSamples& samples);

}  // namespace orv::cli
