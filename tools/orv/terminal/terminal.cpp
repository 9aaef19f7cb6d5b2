#include "terminal/terminal.h"

#include <cstdlib>

#include "methods/json_text.h"
#include "system/console.h"
#include "terminal/messages.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

int terminalWidth() {
    int columns = terminalColumns();
    if (columns == 0) {
        const char* const told = std::getenv("COLUMNS");
        columns = told == nullptr ? 0 : std::atoi(told);
    }
    // Some terminals wrap as soon as the last column is filled.
    return (columns > 0 ? columns : 80) - 1;
}

std::string wholeSeconds(double seconds) {
    const long whole = static_cast<long>(seconds + 0.5);
    return whole < 60 ? std::to_string(whole) + " s" : durationText(static_cast<double>(whole));
}

std::string jsonQuoted(const std::string& text) {
    JsonText json;
    json.element(cleanUtf8(text));
    std::string written = json.take();
    while (!written.empty() && written.back() == '\n') {
        written.pop_back();
    }
    return written;
}

ProgressStyle styleFor(ProgressStyle wanted) {
    if (wanted != ProgressStyle::Automatic) {
        return wanted;
    }
    return canRedrawErrors() ? ProgressStyle::Bar : ProgressStyle::Lines;
}

}  // namespace orv::cli
