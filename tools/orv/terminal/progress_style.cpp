#include "terminal/progress_style.h"

#include <array>
#include <utility>

namespace orv::cli {

bool readProgressStyle(std::string_view word, ProgressStyle& style) {
    constexpr std::array<std::pair<std::string_view, ProgressStyle>, 4> kStyles{{
        {"bar", ProgressStyle::Bar},
        {"lines", ProgressStyle::Lines},
        {"json", ProgressStyle::Json},
        {"none", ProgressStyle::None},
    }};
    for (const auto& [name, candidate] : kStyles) {
        if (name == word) {
            style = candidate;
            return true;
        }
    }
    return false;
}

}  // namespace orv::cli
