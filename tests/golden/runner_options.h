#pragma once

#include <string>

namespace golden {

/// What the command line asks for.
struct RunnerOptions {
    std::string library;
    std::string table;
    std::string target;  ///< limit of the instruction sets; empty for none
    std::string only;    ///< part of the names of the cases to run
    bool write = false;  ///< print the table with what was seen, compare nothing
    bool trace = false;  ///< name each case before it runs, for one that doesn't return
};

extern const char kUsage[];

/// Fails: false for anything that `kUsage` doesn't allow.
bool readOptions(int count, char** values, RunnerOptions& options);

/// Why a kernel target can't run here; empty if it can.
std::string lackOf(const std::string& target);

}  // namespace golden
