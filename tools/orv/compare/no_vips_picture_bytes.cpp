#include "bmp_codec.h"
#include "compare/picture_bytes.h"

namespace orv::cli {

bool havePhotoCoding() {
    return false;
}

std::string pageType(PageCoding /*coding*/) {
    return "image/bmp";
}

std::string encodeForPage(const Picture& picture, PageCoding /*coding*/,
                          std::vector<unsigned char>& bytes) {
    bytes = encodeBmp(picture);
    return {};
}

std::shared_ptr<void> profileAlone(const std::shared_ptr<void>& /*metadata*/, bool /*grey*/) {
    return nullptr;
}

}  // namespace orv::cli
