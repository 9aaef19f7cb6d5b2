#include "help/completion_entries.h"

#include <algorithm>
#include <array>

#include "help/completions.h"
#include "help/topics.h"

namespace orv::cli {

namespace {

constexpr std::array<std::string_view, 3> kShells{"bash", "zsh", "fish"};

std::vector<std::string> split(std::string_view words, char separator) {
    std::vector<std::string> list;
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(separator), words.size());
        if (end > 0) {
            list.emplace_back(words.substr(0, end));
        }
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    return list;
}

/// The first clause of a help text.
std::string clause(std::string_view help) {
    return std::string(help.substr(0, std::min(help.find_first_of(";:["), help.size())));
}

CompletionEntry entryOf(const Option& option) {
    return {std::string(option.name),
            option.letter,
            option.kind,
            option.valueKind,
            std::string(option.placeholder),
            split(option.words, ' '),
            clause(option.help)};
}

CompletionEntry entryOf(const Parameter& parameter) {
    CompletionEntry entry;
    entry.name = parameter.name;
    entry.placeholder = placeholder(parameter);
    entry.help = clause(parameter.help);
    if (parameter.kind != ParameterKind::Flag) {
        entry.kind = OptionKind::Value;
    }
    if (parameter.kind == ParameterKind::Choice) {
        entry.valueKind = ValueKind::Words;
        for (const Choice& candidate : parameter.choices()) {
            entry.values.emplace_back(candidate.name);
        }
    }
    return entry;
}

std::string firstOf(const Verb& verb) {
    const std::string first = verb.words.substr(0, verb.words.find(' '));
    return first;
}

}  // namespace

std::vector<CompletionEntry> completionEntries(const Verb& verb) {
    std::vector<CompletionEntry> entries;
    for (const Parameter& parameter : verb.parameters) {
        entries.push_back(entryOf(parameter));
    }
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            const auto same = std::find_if(
                entries.begin(), entries.end(),
                [&](const CompletionEntry& entry) { return entry.name == option.name; });
            if (same == entries.end()) {
                entries.push_back(entryOf(option));
            } else if (same->values.empty()) {
                same->values = split(option.words, ' ');
                same->valueKind = option.valueKind;
            }
        }
    }
    return entries;
}

std::vector<std::string> firstWords(const Verb& verb) {
    const std::string first = firstOf(verb);
    std::vector<std::string> words;
    if (first == "VERB") {
        return methodNames();
    }
    if (first == "[VERB|TOPIC]") {
        for (const Verb& other : verbTable()) {
            words.push_back(other.name);
        }
        for (const HelpTopic& topic : helpTopics()) {
            words.emplace_back(topic.name);
        }
        return words;
    }
    const bool alternatives = first.find('|') != std::string::npos;
    return alternatives ? split(first, '|') : words;
}

bool takesFiles(const Verb& verb) {
    return !verb.words.empty() && (firstWords(verb).empty() || firstOf(verb) == "VERB");
}

std::vector<std::string> methodNames() {
    std::vector<std::string> names;
    for (const Verb& verb : verbTable()) {
        if (verb.method != nullptr) {
            names.push_back(verb.name);
        }
    }
    return names;
}

std::string joinedWords(const std::vector<std::string>& words, std::string_view separator,
                        std::string (*escape)(const std::string&)) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : std::string(separator)) + escape(word);
    }
    return text;
}

std::string escaped(std::string_view text, std::string_view special) {
    std::string result;
    for (const char c : text) {
        if (special.find(c) != std::string_view::npos) {
            result += '\\';
        }
        result += c;
    }
    return result;
}

std::span<const std::string_view> completionShells() {
    return kShells;
}

std::string completionsFor(std::string_view shell) {
    return shell == "bash"   ? bashCompletions()
           : shell == "zsh"  ? zshCompletions()
           : shell == "fish" ? fishCompletions()
                             : std::string();
}

}  // namespace orv::cli
