#pragma once

#include <string>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// Reads the header of a binary PGM or PPM from the first bytes of a file of `fileBytes`.
///
/// Fails:   with a reason without a path; an empty text means success.
std::string netpbmHeader(const std::vector<unsigned char>& head, double fileBytes,
                         PictureHeader& header);

/// Decodes a binary PGM (P5) or PPM (P6) of 8 or 16 bits.
///
/// Fails:   with a reason without a path; an empty text means success.
std::string decodeNetpbm(const std::vector<unsigned char>& file, Picture& picture);

/// Encodes 8- or 16-bit samples as P5 or P6; `asColour` writes grey as three equal channels.
std::vector<unsigned char> encodeNetpbm(const Picture& picture, bool asColour);

}  // namespace orv::cli
