#pragma once

#include <string>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// How a picture goes into a page.
enum class PageCoding {
    Lossless,  ///< PNG; BMP without a library
    Photo,     ///< JPEG of quality 92 with full colour resolution
};

/// Whether this build can code photos; without a library it can't.
bool havePhotoCoding();

/// The type of what encodeForPage() gives, such as "image/png".
std::string pageType(PageCoding coding);

/// Codes a picture of 8 bits without alpha; of its metadata the colour profile stays.
///
/// Fails:   with a reason; an empty text means success.
std::string encodeForPage(Picture picture, PageCoding coding,
                          std::vector<unsigned char>& bytes);

}  // namespace orv::cli
