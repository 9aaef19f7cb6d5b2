#pragma once

namespace orv::cli {

/// What the tool hands back to the shell.
enum class ExitCode {
    Done = 0,
    Refused = 1,  ///< the method refused or failed
    Usage = 2,    ///< the command line is wrong
    File = 3,     ///< a file can't be read or written
};

}  // namespace orv::cli
