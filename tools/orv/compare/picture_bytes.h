#pragma once

#include <memory>
#include <string>
#include <vector>

#include "image_file.h"

namespace orv::cli {

/// How a picture goes into a page.
enum class PageCoding {
    Lossless,  ///< PNG; BMP without libvips
    Photo,     ///< JPEG of quality 92 with full colour resolution
};

/// Whether this build can code photos; without libvips it can't.
bool havePhotoCoding();

/// The type of what encodeForPage() gives, such as "image/png".
std::string pageType(PageCoding coding);

/// Codes a picture of 8 bits without alpha.
///
/// Fails:   with a reason; an empty text means success.
std::string encodeForPage(const Picture& picture, PageCoding coding,
                          std::vector<unsigned char>& bytes);

/// The colour profile alone of the metadata of a picture, if it has one that suits grey or
/// colour samples; else null.
std::shared_ptr<void> profileAlone(const std::shared_ptr<void>& metadata, bool grey);

}  // namespace orv::cli
