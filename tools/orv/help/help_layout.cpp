#include "help/help_layout.h"

#include <algorithm>

namespace orv::cli {

namespace {

/// Stands for a space at which no line is broken.
constexpr char kJoin = '\x1f';

/// Appends the words of a line, wrapped, when `at` characters of the line are there already.
void wrap(std::string_view words, std::size_t at, std::size_t indent, std::string& text) {
    bool first = true;
    std::size_t from = 0;
    while (from < words.size()) {
        const std::size_t end = std::min(words.find(' ', from), words.size());
        const std::size_t length = end - from;
        if (!first && at + 1 + length > kHelpWidth) {
            text += "\n" + std::string(indent, ' ');
            at = indent;
        } else if (!first) {
            text += ' ';
            ++at;
        }
        text += words.substr(from, length);
        at += length;
        first = false;
        from = end + 1;
    }
}

}  // namespace

std::string helpRow(const std::string& left, const std::string& right, std::size_t column) {
    std::string text = "  " + left;
    if (text.size() + 2 > column) {
        text += "\n" + std::string(column, ' ');
    } else {
        text.resize(column, ' ');
    }
    wrap(right, column, column, text);
    return plainSpaces(std::move(text)) + "\n";
}

std::string helpParagraphs(std::string_view text, std::size_t indent) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        if (line.empty() || line.front() == ' ') {
            result += line;
        } else {
            wrap(line, 0, indent, result);
        }
        result += '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return plainSpaces(std::move(result));
}

std::string unbroken(std::string text) {
    std::replace(text.begin(), text.end(), ' ', kJoin);
    return text;
}

std::string withUnbrokenDefault(std::string_view help) {
    const std::size_t from = std::min(help.find("[default:"), help.size());
    const std::size_t end = std::min(help.find(']', from), help.size());
    return std::string(help.substr(0, from)) +
           unbroken(std::string(help.substr(from, end - from))) + std::string(help.substr(end));
}

std::string plainSpaces(std::string text) {
    std::replace(text.begin(), text.end(), kJoin, ' ');
    return text;
}

std::size_t lineCount(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace orv::cli
