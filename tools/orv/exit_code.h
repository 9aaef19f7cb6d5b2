#pragma once

namespace orv::cli {

/// What the tool hands back to the shell. An interrupted run ends by its signal, which shells
/// show as 130.
enum class ExitCode {
    Done = 0,
    SomeFailed = 1,  ///< some pictures of several failed
    Usage = 2,       ///< the command line is wrong
    Input = 3,       ///< a file can't be read
    Output = 4,      ///< a file can't be written
    Refused = 5,     ///< the method refused, or its result isn't finite
    Memory = 6,      ///< the work needs more memory than it may have
};

}  // namespace orv::cli
