#include "terminal/shell_text.h"

namespace orv::cli {

std::string shellWord(std::string_view word) {
    if (!word.empty() && word.find_first_of(" \t\n\"'\\$`*?[](){}<>|&;~#!") == word.npos) {
        return std::string(word);
    }
    std::string text = "'";
    for (const char c : word) {
        text += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return text + "'";
}

std::string commandText(std::string_view verb, const std::vector<std::string>& words) {
    std::string text = "orv " + std::string(verb);
    for (const std::string& word : words) {
        text += " " + shellWord(word);
    }
    return text;
}

}  // namespace orv::cli
