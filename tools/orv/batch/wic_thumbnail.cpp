#include <utility>

#include "batch/thumbnail.h"
#include "files/image_file.h"

namespace orv::cli {

bool makeThumbnail(const std::string& path, int side, std::vector<unsigned char>& jpeg) {
    constexpr int kQuality = 80;
    Picture picture;
    if (!readPicture(path, picture).empty() || !scaleDown(picture, side).empty()) {
        return false;
    }
    if (picture.alpha) {
        dropAlpha(picture);
    }
    picture.samples = narrowed(std::move(picture.samples));
    WriteSettings settings;
    settings.format = formatEntry(Format::Jpeg);
    settings.quality = kQuality;
    settings.strip = Strip::All;
    return encodePicture(settings, picture, jpeg).empty();
}

}  // namespace orv::cli
