#pragma once

#include <cstdio>

namespace orv {

/// Writes printf-style text to the engine's standard output: stdout, unless a SilencedOutput
/// stands in this process.
#if defined(__GNUC__)
[[gnu::format(printf, 1, 2)]]
#endif
void printText(const char* format, ...);

/// Writes printf-style text to the given file.
#if defined(__GNUC__)
[[gnu::format(printf, 2, 3)]]
#endif
void printTextTo(std::FILE* file, const char* format, ...);

/// Whether a SilencedOutput stands in this process, so that printText drops what it is given. Who
/// prints a lot asks here first: text that is dropped should cost nothing.
bool isTextSilenced();

/// Flushes the engine's standard output.
void flushText();

/// Drops what the engine prints to standard output while it lives, so that a client's own
/// output stays clean. May be nested.
class SilencedOutput {
  public:
    SilencedOutput();
    ~SilencedOutput();
    SilencedOutput(const SilencedOutput&) = delete;
    SilencedOutput& operator=(const SilencedOutput&) = delete;
};

}  // namespace orv
