#include "files/vips_file.h"

namespace orv::cli {

namespace {

constexpr const char* kMissing = "needs libvips, which this build is without";

}  // namespace

bool haveVips() {
    return false;
}

std::string vipsVersion() {
    return {};
}

std::string readHeaderByVips(const PictureSource& /*source*/, PictureHeader& /*header*/) {
    return kMissing;
}

std::string readByVips(const PictureSource& /*source*/, Format /*format*/,
                       Picture& /*picture*/) {
    return kMissing;
}

std::string profileOf(const Picture& /*picture*/) {
    return {};
}

std::string encodeByVips(const WriteSettings& /*settings*/, Picture& /*picture*/,
                         std::vector<unsigned char>& /*bytes*/) {
    return kMissing;
}

std::string scaleByVips(Picture& /*picture*/, int /*maxSide*/) {
    return kMissing;
}

}  // namespace orv::cli
