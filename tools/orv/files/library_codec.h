#pragma once

#include <string>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// Whether the library reads and writes a format.
bool libraryCodes(Format format);

/// Why some formats are missing, to stand after "this build of orv": "is without libvips".
std::string codingLimit();

/// What the library does otherwise than orv help formats tells, as lines for that text; empty
/// when nothing.
std::string codingNotes();

/// readHeader() for what isCoded() by the library; the format and the size of the file are known.
///
/// Fails:   with a reason without a name, as do all of these; an empty text means success.
std::string readHeaderByLibrary(const PictureSource& source, PictureHeader& header);

/// readPicture() for such a format.
std::string readByLibrary(const PictureSource& source, Format format, Picture& picture);

/// encodePicture() for such a format.
std::string encodeByLibrary(const WriteSettings& settings, Picture& picture,
                            std::vector<unsigned char>& bytes);

/// What the colour profile of a picture calls itself, empty when there is none.
std::string profileOf(const Picture& picture);

/// scaleDown() of a picture that is larger than that.
std::string scaleByLibrary(Picture& picture, int maxSide);

}  // namespace orv::cli
