#include "files/library_codec.h"

namespace orv::cli {

namespace {

constexpr const char* kMissing = "needs libvips, which this build is without";

}  // namespace

bool haveLibrary() {
    return false;
}

std::string libraryVersion() {
    return {};
}

bool libraryCodes(Format /*format*/) {
    return false;
}

std::string codingLimit() {
    return "is without libvips";
}

std::string codingNotes() {
    return {};
}

std::string readHeaderByLibrary(const PictureSource& /*source*/, PictureHeader& /*header*/) {
    return kMissing;
}

std::string readByLibrary(const PictureSource& /*source*/, Format /*format*/,
                          Picture& /*picture*/) {
    return kMissing;
}

std::string profileOf(const Picture& /*picture*/) {
    return {};
}

std::string encodeByLibrary(const WriteSettings& /*settings*/, Picture& /*picture*/,
                            std::vector<unsigned char>& /*bytes*/) {
    return kMissing;
}

std::string scaleByLibrary(Picture& /*picture*/, int /*maxSide*/) {
    return kMissing;
}

}  // namespace orv::cli
