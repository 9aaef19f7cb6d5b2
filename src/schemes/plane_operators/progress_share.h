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

/// An end of the window moved by a share; wraps where a long time loop has pushed it to the end
/// of the int range.
inline int progressSum(int end, int share) {
    return static_cast<int>(static_cast<unsigned>(end) + static_cast<unsigned>(share));
}

/// Narrows the window to the slice of plane c of three, of a window `width` wide on entry.
///
/// Quirk:   progress-slice
inline void narrowToPlane(ProgressWindow& window, long long width, int c) {
    // The lower end on entry is not added back.
    // quirk: progress-slice
    window.progressLow = progressShare(width, c, 3);
    window.progressHigh = progressShare(width, c + 1, 3);
}

}  // namespace orv
