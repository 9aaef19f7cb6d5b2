#pragma once

#include <string>
#include <vector>

namespace orv::cli {

/// The standard streams.
enum class Stream { Input, Output, Errors };

/// Whether a stream is a terminal.
bool isTerminal(Stream stream);

/// Whether standard error is a terminal that lets a line be written again.
bool canRedrawErrors();

/// The columns of the terminal behind standard error; 0 when it doesn't tell.
int terminalColumns();

/// Makes the standard streams carry bytes as they are, and a console show UTF-8.
///
/// Returns: the words of the command line behind the program's name, in UTF-8.
std::vector<std::string> startProgram(int argc, char** argv);

/// The processors of this machine, at least 1.
int processorCount();

}  // namespace orv::cli
