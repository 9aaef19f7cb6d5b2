#include "vips_file.h"

namespace orv::cli {

bool startVips() {
    return false;
}

bool haveVips() {
    return false;
}

std::string vipsVersion() {
    return {};
}

std::string readByVips(const std::string& /*path*/, Format /*format*/, Picture& /*picture*/) {
    return "needs libvips, which this build is without";
}

std::string writeByVips(const std::string& /*path*/, Format /*format*/, Picture& /*picture*/) {
    return "needs libvips, which this build is without";
}

}  // namespace orv::cli
