#pragma once

#include <climits>

namespace orv {

/// Rounds a scalar to single precision; written out so that the rounding shows at the call.
constexpr float toFloat(double value) {
    return static_cast<float>(value);
}

/// Truncates toward zero: the one way from a sample to an integer.
///
/// Domain:  every double. NaN and values whose truncation does not fit an int give INT_MIN,
///          the value that x86 conversions give, on every platform.
constexpr int toInt(double value) {
    // -2147483649 < value < 2147483648 is exactly the range whose truncation fits; NaN fails
    // it.
    if (value > static_cast<double>(INT_MIN) - 1.0 &&
        value < static_cast<double>(INT_MAX) + 1.0) {
        return static_cast<int>(value);
    }
    return INT_MIN;
}

/// The low byte of an integer: 300 gives 44, -1 gives 255, INT_MIN gives 0.
constexpr unsigned char toLowByte(int value) {
    return static_cast<unsigned char>(value & 0xff);
}

}  // namespace orv
