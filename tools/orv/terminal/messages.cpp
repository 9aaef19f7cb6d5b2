#include "terminal/messages.h"

#include <array>
#include <cstdio>

namespace orv::cli {

namespace {

template <typename... Values>
std::string formatted(const char* format, Values... values) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

void writeLine(const std::string& text) {
    std::fputs(("orv: " + printable(text) + "\n").c_str(), stderr);
}

}  // namespace

std::string printable(std::string_view text) {
    std::string line(text);
    for (char& c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f) {
            c = '?';
        }
    }
    return line;
}

ExitCode fail(ExitCode code, std::string_view text) {
    writeLine(std::string(text));
    return code;
}

void warn(std::string_view text) {
    writeLine("warning: " + std::string(text));
}

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string oneDecimal(double value) {
    return formatted("%.1f", value);
}

std::string durationText(double seconds) {
    if (seconds < 10.0) {
        return formatted("%.2f s", seconds);
    }
    if (seconds < 60.0) {
        return formatted("%.0f s", seconds);
    }
    const long whole = static_cast<long>(seconds + 0.5);
    return formatted("%ld min %02ld s", whole / 60, whole % 60);
}

std::string sizeText(double bytes) {
    if (bytes < 1000.0) {
        return formatted("%.0f bytes", bytes);
    }
    if (bytes < 1e6) {
        return formatted("%.0f KB", bytes / 1e3);
    }
    return formatted("%.1f MB", bytes / 1e6);
}

}  // namespace orv::cli
