#pragma once

#include <array>
#include <cstddef>

#include "images/real_image.h"
#include "operators/kernels/colour_kernels.h"

namespace orv {

/// Mean and standard deviation of samples.
struct ChannelStatistics {
    double mean;
    double deviation;
};

/// A variance below this is what rounding leaves of sums / n - mean * mean on equal samples.
inline constexpr double kLeastVariance = 1e-12;

/// Mean and deviation of n samples from their sums; a variance below `leastVariance` counts as 0.
///
///     mean = sum / n   deviation = sqrt(squares / n - mean * mean)
ChannelStatistics statisticsOf(const LaneSums& sums, std::size_t n, double leastVariance);

/// Mean and deviation over the samples x to x + width - 1 and y to y + height - 1 that lie inside
/// the plane, summed x outside and y inside.
///
/// A negative variance counts as 0, a NaN stays one.
ChannelStatistics windowStatistics(const RealImage& plane, int x, int y, int width, int height);

}  // namespace orv
