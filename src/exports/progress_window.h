#pragma once

#if defined(_WIN32)
#define ORV_PROGRESS_CALL __stdcall
#else
#define ORV_PROGRESS_CALL
#endif

namespace orv {

/// What a host's progress callback looks like: one integer in the scale of the window.
using ProgressCallback = void(ORV_PROGRESS_CALL*)(int);

/// The callback and the range that reports go into; one for the process, all zero at the start.
///
/// Drivers narrow the range in place so that each plane or step reports into a slice of its
/// own, and nobody restores it: only SetORVCallBack sets 0 and 100 again. Quirk: progress-slice
struct ProgressWindow {
    ProgressCallback callback;  ///< null when reporting is off
    int progressLow;
    int progressHigh;
};

/// The window of this process.
ProgressWindow& progressWindow();

/// Calls the callback with `value`, when there is one.
void reportProgress(int value);

}  // namespace orv
