#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orv {

/// Whether two words are the same but for the case of ASCII letters.
bool sameWord(std::string_view a, std::string_view b);

/// The candidate that a misspelt word most likely means, or an empty text when none is near.
///
/// Near means at most a third of the longer word's letters (and at least one) inserted,
/// removed, replaced or swapped with its neighbour, whatever their case. The first of equals
/// wins.
///
/// Cost:    one table of the two lengths for each candidate.
/// Source:  [Damerau1964], restricted to swaps of neighbours.
std::string_view nearestWord(std::string_view word,
                             std::span<const std::string_view> candidates);

/// ", did you mean 'x'?" for the nearest candidate, or an empty text.
std::string didYouMean(std::string_view word, std::span<const std::string_view> candidates);

}  // namespace orv
