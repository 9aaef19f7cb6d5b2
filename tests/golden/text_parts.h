#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace golden {

/// The parts of `text` between separators, empty ones too.
std::vector<std::string> parts(const std::string& text, char separator);

/// The words between blanks; none of an empty text.
std::vector<std::string> words(const std::string& text);

/// Reads a decimal such as -0.25, "nan", "inf" or "-inf".
///
/// C libraries round decimals differently. The digits here make a whole number below 2^53 that is
/// divided by a power of ten below 10^23, both exact, so the quotient is the nearest double.
/// Fails:   false for anything else, and for more digits than that.
bool readDecimal(const std::string& text, double& value);

/// Reads an int. Fails: false for anything else.
bool readInt(const std::string& text, int& value);

/// 64-bit FNV-1a as 16 hexadecimal digits.
std::string hashOf(const unsigned char* bytes, std::size_t count);
std::string hashOf(const std::string& text);

/// The values as they are, or number, smallest, largest and hash of more than 24; "-" for
/// none.
std::string progressText(const std::vector<int>& values);

}  // namespace golden
