#include "methods/suggestion.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orv {

namespace {

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

int editDistance(std::string_view a, std::string_view b) {
    const std::size_t columns = b.size() + 1;
    std::vector<int> table((a.size() + 1) * columns);
    const auto at = [&](std::size_t i, std::size_t j) -> int& {
        return table[i * columns + j];
    };

    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = static_cast<int>(i + j);
                continue;
            }
            const bool same = lowered(a[i - 1]) == lowered(b[j - 1]);
            int best = at(i - 1, j - 1) + (same ? 0 : 1);
            best = std::min({best, at(i - 1, j) + 1, at(i, j - 1) + 1});
            if (i > 1 && j > 1 && lowered(a[i - 1]) == lowered(b[j - 2]) &&
                lowered(a[i - 2]) == lowered(b[j - 1])) {
                best = std::min(best, at(i - 2, j - 2) + 1);
            }
            at(i, j) = best;
        }
    }
    return at(a.size(), b.size());
}

}  // namespace

bool sameWord(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

std::string_view nearestWord(std::string_view word,
                             std::span<const std::string_view> candidates) {
    // A word far longer than any name is no misspelling, and its table would be large.
    constexpr std::size_t kLongest = 64;
    std::string_view nearest;
    if (word.empty() || word.size() > kLongest) {
        return nearest;
    }

    int least = 0;
    for (const std::string_view candidate : candidates) {
        const int distance = editDistance(word, candidate);
        const int allowed =
            std::max(1, static_cast<int>(std::max(word.size(), candidate.size()) / 3));
        if (distance <= allowed && (nearest.empty() || distance < least)) {
            nearest = candidate;
            least = distance;
        }
    }
    return nearest;
}

std::string didYouMean(std::string_view word, std::span<const std::string_view> candidates) {
    const std::string_view nearest = nearestWord(word, candidates);
    if (nearest.empty()) {
        return {};
    }
    return ", did you mean '" + std::string(nearest) + "'?";
}

}  // namespace orv
