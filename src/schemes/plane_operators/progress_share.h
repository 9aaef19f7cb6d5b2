#pragma once

#include "exports/progress_window.h"

namespace orv {

/// The width of the progress window.
///
/// Wide arithmetic here and in `progressShare`: a host's window is 0 to 100, but the time loop
/// moves it up with every step, so that its ends can leave the range of an int.
inline long long progressWidth(const ProgressWindow& window) {
    return static_cast<long long>(window.progressHigh) - window.progressLow;
}

/// What `done` of `total` equal parts of a scale of `width` units come to, truncated.
inline int progressShare(long long width, long long done, long long total) {
    return static_cast<int>(width * done / total);
}

}  // namespace orv
