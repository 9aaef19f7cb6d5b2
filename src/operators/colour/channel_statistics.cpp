#include "operators/colour/channel_statistics.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

double joined(const double (&lanes)[8]) {
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

}  // namespace

ChannelStatistics statisticsOf(const LaneSums& sums, std::size_t n, double leastVariance) {
    const double count = static_cast<double>(n);
    const double mean = joined(sums.sum) / count;
    const double variance = joined(sums.squares) / count - mean * mean;
    return {mean, variance < leastVariance ? 0.0 : std::sqrt(variance)};
}

ChannelStatistics windowStatistics(const RealImage& plane, int x, int y, int width,
                                   int height) {
    const int lastX = std::min(x + width, plane.width());
    const int lastY = std::min(y + height, plane.height());
    double sum = 0.0;
    double squares = 0.0;
    int count = 0;
    for (int i = std::max(x, 0); i < lastX; ++i) {
        for (int j = std::max(y, 0); j < lastY; ++j) {
            const double v = plane.row(i)[j];
            sum += v;
            squares += v * v;
            ++count;
        }
    }
    const double mean = sum / count;
    const double variance = squares / count - mean * mean;
    return {mean, std::sqrt(variance < 0.0 ? 0.0 : variance)};
}

}  // namespace orv
