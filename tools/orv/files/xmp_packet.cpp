#include "files/xmp_packet.h"

#include <algorithm>
#include <cctype>

namespace orv::cli {

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool tellsPlace(std::string_view bytes) {
    using std::string_view_literals::operator""sv;
    for (const std::string_view mark : {"8BIM\x04\x22"sv, "8BIM\x04\x23"sv}) {
        if (bytes.find(mark) != std::string_view::npos) {
            return true;
        }
    }
    const std::string text = lowerCase(bytes);
    for (const std::string_view word : {"gps"sv, "geo:lat"sv, "latitude"sv}) {
        if (text.find(word) != std::string::npos) {
            return true;
        }
    }
    return false;
}

std::string uprightXmp(std::string_view packet) {
    std::string text(packet);
    for (const std::string_view mark :
         {std::string_view("tiff:Orientation=\""), std::string_view("tiff:Orientation='"),
          std::string_view("tiff:Orientation>")}) {
        const std::size_t at = text.find(mark);
        if (at != std::string::npos && at + mark.size() < text.size() &&
            std::isdigit(static_cast<unsigned char>(text[at + mark.size()])) != 0) {
            text[at + mark.size()] = '1';
        }
    }
    return text;
}

}  // namespace orv::cli
