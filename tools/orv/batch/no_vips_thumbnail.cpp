#include "batch/thumbnail.h"

namespace orv::cli {

bool makeThumbnail(const std::string& /*path*/, int /*side*/,
                   std::vector<unsigned char>& /*jpeg*/) {
    return false;
}

}  // namespace orv::cli
