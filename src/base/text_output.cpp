#include "base/text_output.h"

#include <atomic>
#include <cstdarg>

namespace orv {

namespace {

constinit std::atomic<int> silenceDepth{0};

}  // namespace

bool isTextSilenced() {
    return silenceDepth.load(std::memory_order_relaxed) > 0;
}

void printText(const char* format, ...) {
    if (isTextSilenced()) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stdout, format, arguments);
    va_end(arguments);
}

void printTextTo(std::FILE* file, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(file, format, arguments);
    va_end(arguments);
}

void flushText() {
    std::fflush(stdout);
}

SilencedOutput::SilencedOutput() {
    silenceDepth.fetch_add(1, std::memory_order_relaxed);
}

SilencedOutput::~SilencedOutput() {
    silenceDepth.fetch_sub(1, std::memory_order_relaxed);
}

}  // namespace orv
