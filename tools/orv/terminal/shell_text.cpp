#include "terminal/shell_text.h"

namespace orv::cli {

std::string singleQuoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + "'";
}

std::string shellWord(std::string_view word) {
    if (!word.empty() && word.find_first_of(" \t\n\"'\\$`*?[](){}<>|&;~#!") == word.npos) {
        return std::string(word);
    }
    return singleQuoted(word);
}

std::string shellFile(std::string_view path) {
    const bool dashed = path.size() > 1 && path.front() == '-';
    return shellWord(dashed ? "./" + std::string(path) : std::string(path));
}

std::string commandText(std::string_view verb, const std::vector<std::string>& words) {
    std::string text = "orv " + std::string(verb);
    for (const std::string& word : words) {
        text += " " + shellWord(word);
    }
    return text;
}

}  // namespace orv::cli
