#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orv {

/// Coefficients that stand together.
struct Coefficients {
    const double* first;
    std::size_t count;
};

/// The magnitude at `position`, from 0, of the coefficients of all runs and `zeros` zeros more, in
/// ascending order.
///
/// Domain:  position below the count of all; what is no number counts as larger than all others.
/// Fails:   memory that can't be had writes `message` to the standard error stream and ends the
///          process with status 1.
/// Cost:    as a rule one pass, which gathers what lies between two of a sample's magnitudes;
///          three where the sample misleads or magnitudes repeat.
double magnitudeAt(std::span<const Coefficients> runs, std::uint64_t zeros,
                   std::uint64_t position, const char* message);

}  // namespace orv
