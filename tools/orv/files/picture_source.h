#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orv::cli {

/// Where the bytes of a picture are.
struct PictureSource {
    std::string name;                  ///< a path, or "standard input"
    std::vector<unsigned char> bytes;  ///< the whole file, when it is in memory
    bool inMemory = false;
};

/// The most bytes that are taken from a stream.
inline constexpr double kMostStreamBytes = 4e9;

/// Finds the picture that a word of the command line names.
///
/// "-" is standard input, which is read to its end, as is a pipe that has a path. Any other word
/// is the path of a file, which isn't opened yet.
///
/// Fails:   with one line that begins with the name: no such file, a folder, a device, a
///          terminal, an empty stream, one of more than 4 GB. An empty text means success.
std::string openSource(const std::string& word, PictureSource& source);

/// The first bytes of a source, at most `most`.
///
/// Fails:   with a reason without the name; an empty text means success.
std::string readHead(const PictureSource& source, std::size_t most,
                     std::vector<unsigned char>& head);

/// All bytes of a source.
///
/// Fails:   with a reason without the name; an empty text means success.
std::string readAll(const PictureSource& source, std::vector<unsigned char>& bytes);

/// The size of a source; 0 when it can't be told.
double sourceSize(const PictureSource& source);

}  // namespace orv::cli
