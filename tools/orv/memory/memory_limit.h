#pragma once

#include <optional>
#include <string>
#include <vector>

#include "memory/job_memory.h"

namespace orv::cli {

/// Has the system take freed blocks back at once, so that what a run holds is what it needs.
/// Called once, at the start of the program.
void returnFreedMemory();

/// Bytes that a program may take at the moment: the least of what the machine has free and what
/// the control groups of this process still allow. Nothing where the system doesn't tell.
std::optional<double> availableMemory();

/// The same from files below `root` in place of "/", for tests.
std::optional<double> availableMemoryBelow(const std::string& root);

/// Reads "2G", "500M", "64K", "1000000" or "75%" into bytes; a share is one of `available`, and
/// nothing where that isn't known. An empty text is 75%.
///
/// Fails:   with a line about --max-memory; an empty text means success.
std::string readMemorySize(std::string_view text, std::optional<double> available,
                           std::optional<double>& limit);

/// Why a job must not start, with what would fit: one line, empty when it may.
///
/// `limit` without a value lets all jobs start.
std::string memoryRefusal(const std::string& input, const std::vector<Step>& steps,
                          const JobShape& shape, std::optional<double> limit);

/// A size in memory: "512 MB", "1.4 GB".
std::string memoryText(double bytes);

}  // namespace orv::cli
