#include "text_parts.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <limits>

namespace golden {

std::vector<std::string> parts(const std::string& text, char separator) {
    std::vector<std::string> found(1);
    for (const char c : text) {
        if (c == separator) {
            found.emplace_back();
        } else {
            found.back().push_back(c);
        }
    }
    return found;
}

std::vector<std::string> words(const std::string& text) {
    std::vector<std::string> found = parts(text, ' ');
    found.erase(std::remove(found.begin(), found.end(), std::string()), found.end());
    return found;
}

bool readDecimal(const std::string& text, double& value) {
    const bool negative = !text.empty() && text[0] == '-';
    const std::string digits = text.substr(negative ? 1 : 0);
    double whole = 0.0;
    double scale = 1.0;
    bool behindPoint = false;
    bool any = false;
    for (const char c : digits) {
        if (c == '.' && !behindPoint) {
            behindPoint = true;
            continue;
        }
        if (c < '0' || c > '9') {
            any = false;
            break;
        }
        any = true;
        whole = 10.0 * whole + (c - '0');
        scale = behindPoint ? 10.0 * scale : scale;
    }
    if (digits == "nan") {
        value = std::numeric_limits<double>::quiet_NaN();
    } else if (digits == "inf") {
        value = std::numeric_limits<double>::infinity();
    } else if (any && whole < 9007199254740992.0 && scale <= 1e22) {
        value = whole / scale;
    } else {
        return false;
    }
    value = negative ? -value : value;
    return true;
}

bool readInt(const std::string& text, int& value) {
    double number = 0.0;
    if (text.find('.') != std::string::npos || !readDecimal(text, number) ||
        !(number >= INT_MIN && number <= INT_MAX)) {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

std::string hashOf(const unsigned char* bytes, std::size_t count) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (std::size_t i = 0; i < count; ++i) {
        hash = (hash ^ bytes[i]) * 0x100000001b3U;
    }
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4) {
        text.push_back("0123456789abcdef"[(hash >> shift) & 15U]);
    }
    return text;
}

std::string hashOf(const std::string& text) {
    return hashOf(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

std::string progressText(const std::vector<int>& values) {
    constexpr std::size_t kMostShown = 24;
    if (values.empty()) {
        return "-";
    }
    std::string text;
    for (const int value : values) {
        text += (text.empty() ? "" : " ") + std::to_string(value);
    }
    if (values.size() <= kMostShown) {
        return text;
    }
    const auto range = std::minmax_element(values.begin(), values.end());
    return std::to_string(values.size()) + " values " + std::to_string(*range.first) + " to " +
           std::to_string(*range.second) + " " + hashOf(text);
}

}  // namespace golden
