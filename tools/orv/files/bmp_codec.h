#pragma once

#include <string>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// Reads the headers of a Windows bitmap from the first bytes of a file of `fileBytes`; 64 KB do.
///
/// Fails:   with a reason without a path; an empty text means success.
std::string bmpHeader(const std::vector<unsigned char>& head, double fileBytes,
                      PictureHeader& header);

/// Decodes an uncompressed Windows bitmap of 8, 24 or 32 bits a pixel.
///
/// Fails:   with a reason without a path; an empty text means success.
std::string decodeBmp(const std::vector<unsigned char>& file, Picture& picture);

/// Encodes 8-bit samples: grey with a palette of greys, colour in 24 bits, alpha in 32.
std::vector<unsigned char> encodeBmp(const Picture& picture);

}  // namespace orv::cli
