#pragma once

#include <string>
#include <vector>

#include "golden_table.h"
#include "library.h"
#include "platform.h"

namespace golden {

/// The two streams that a library prints to.
struct Streams {
    DescriptorCapture out{1};
    DescriptorCapture err{2};
};

/// What running a case has shown.
struct Observation {
    Outcome outcome;
    std::string outText;  ///< what `outcome.out` is the hash of
    std::string errText;
    /// What no call may do, such as changing its source; not in the table.
    std::vector<std::string> faults;
    /// False when the line of the table asks for something unknown.
    bool understood = false;
};

/// Runs a case on a thread of its own, so that what the library keeps for each thread is as at
/// its start. The callback is installed before the first call, and not again.
Observation runCase(const Library& library, const Case& one, Streams& streams);

}  // namespace golden
