#include "methods/blur_extension.h"

namespace orv {

std::string blurExtensionRefusal(const Planes& planes, int extension) {
    constexpr int kStart = 3;
    const int width = planes[0]->width();
    const int height = planes[0]->height();
    if (extension != ExtendByNone || (width >= kStart && height >= kStart)) {
        return {};
    }
    return "--extend: none takes at least 3 x 3 pixels, this picture has " +
           std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace orv
