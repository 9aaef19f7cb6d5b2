#include "compare/picture_bytes.h"

namespace orv::cli {

namespace {

Format formatOf(PageCoding coding) {
    if (!haveLibrary()) {
        return Format::Bmp;
    }
    return coding == PageCoding::Photo ? Format::Jpeg : Format::Png;
}

}  // namespace

bool havePhotoCoding() {
    return haveLibrary();
}

std::string pageType(PageCoding coding) {
    switch (formatOf(coding)) {
        case Format::Jpeg:
            return "image/jpeg";
        case Format::Png:
            return "image/png";
        default:
            return "image/bmp";
    }
}

std::string encodeForPage(Picture picture, PageCoding coding,
                          std::vector<unsigned char>& bytes) {
    WriteSettings settings;
    settings.format = formatEntry(formatOf(coding));
    settings.strip = Strip::All;
    return encodePicture(settings, picture, bytes);
}

}  // namespace orv::cli
