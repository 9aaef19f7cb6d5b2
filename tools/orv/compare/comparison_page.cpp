#include "compare/comparison_page.h"

#include <array>
#include <cstddef>
#include <vector>

#include "compare/comparison_numbers.h"
#include "compare/comparison_sheet.h"
#include "compare/picture_bytes.h"
#include "compare/shown_picture.h"
#include "methods/json_text.h"

namespace orv::cli {

namespace {

/// Up to here two photos and their difference come to some 15 MB.
constexpr double kMostLosslessPixels = 2.0e6;
/// Up to here to some 35 MB, and browsers show them.
constexpr double kMostPhotoPixels = 26.0e6;
/// Without libvips nothing is compressed.
constexpr double kMostPlainPixels = 1.5e6;

/// How the pictures go into the page.
struct PagePlan {
    PageCoding coding = PageCoding::Lossless;
    int reduction = 1;
};

PagePlan planFor(const Picture& picture) {
    if (!havePhotoCoding()) {
        return {PageCoding::Lossless, reductionForPixels(picture, kMostPlainPixels)};
    }
    if (reductionForPixels(picture, kMostLosslessPixels) == 1) {
        return {};
    }
    return {PageCoding::Photo, reductionForPixels(picture, kMostPhotoPixels)};
}

std::string addressOf(const Picture& picture, PageCoding coding, std::string& error) {
    std::vector<unsigned char> bytes;
    error = encodeForPage(picture, coding, bytes);
    return "data:" + pageType(coding) + ";base64," + base64(bytes.data(), bytes.size());
}

std::string dataOf(const Comparison& comparison, const PagePlan& plan) {
    JsonText json;
    json.beginObject();
    addComparison(json, comparison);
    json.memberNumber("gain", differenceGain(comparison.figures));
    json.memberNumber("reduction", plan.reduction);
    json.memberBool("lossless", plan.coding == PageCoding::Lossless);
    json.end();
    // No "</script>" of a file name may end the data.
    std::string data;
    for (const char c : json.take()) {
        if (c == '<') {
            data += "\\u003c";
        } else {
            data += c;
        }
    }
    return data;
}

}  // namespace

std::string comparisonPage(const Comparison& comparison, std::string& page) {
    const PagePlan plan = planFor(comparison.before);
    struct Part {
        std::string_view mark;
        std::string text;
    };
    std::array<Part, 4> parts{{{"@ORV_COMPARISON_BEFORE@", {}},
                               {"@ORV_COMPARISON_AFTER@", {}},
                               {"@ORV_COMPARISON_DIFFERENCE@", {}},
                               {"@ORV_COMPARISON_DATA@", dataOf(comparison, plan)}}};
    std::string error;
    parts[0].text =
        addressOf(shownPicture(comparison.before, plan.reduction), plan.coding, error);
    if (error.empty()) {
        parts[1].text =
            addressOf(shownPicture(comparison.after, plan.reduction), plan.coding, error);
    }
    if (error.empty()) {
        Picture difference =
            shownDifference(comparison.before, comparison.after, plan.reduction, /*gain=*/1.0);
        if (plan.coding == PageCoding::Photo) {
            difference = shownMean(difference);
        }
        parts[2].text = addressOf(difference, PageCoding::Lossless, error);
    }
    if (!error.empty()) {
        return error;
    }
    // The marks stand in this order, each once; what a part holds isn't searched.
    std::string_view rest = comparisonTemplate();
    page.clear();
    for (const Part& part : parts) {
        const std::size_t at = rest.find(part.mark);
        page += rest.substr(0, at);
        page += part.text;
        rest.remove_prefix(at + part.mark.size());
    }
    page += rest;
    return {};
}

std::string base64(const unsigned char* bytes, std::size_t count) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((count + 2) / 3 * 4);
    for (std::size_t i = 0; i < count; i += 3) {
        const unsigned first = bytes[i];
        const unsigned second = i + 1 < count ? bytes[i + 1] : 0;
        const unsigned third = i + 2 < count ? bytes[i + 2] : 0;
        const unsigned all = first << 16 | second << 8 | third;
        text += kDigits[all >> 18];
        text += kDigits[all >> 12 & 63];
        text += i + 1 < count ? kDigits[all >> 6 & 63] : '=';
        text += i + 2 < count ? kDigits[all & 63] : '=';
    }
    return text;
}

}  // namespace orv::cli
