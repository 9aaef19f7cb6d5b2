#include <algorithm>
#include <array>
#include <string>

#include "commands/commands.h"
#include "commands/help_verbs.h"
#include "help/completions.h"
#include "help/help_layout.h"
#include "help/help_text.h"
#include "help/man_page.h"
#include "help/topics.h"
#include "methods/suggestion.h"
#include "options/command_line.h"
#include "options/common_options.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

constexpr std::array<Option, 2> kHelp{{
    {"all", '\0', OptionKind::Flag, "", "", "tell every option, choice and source"},
    {"man", '\0', OptionKind::Flag, "", "", "print the manual page, for man -l -"},
}};
constinit const OptionGroup kHelpPages{"Text", kHelp};

std::string unknownSubject(const std::string& word) {
    std::vector<std::string_view> names;
    for (const Verb& verb : verbTable()) {
        names.push_back(verb.name);
    }
    for (const HelpTopic& topic : helpTopics()) {
        names.push_back(topic.name);
    }
    return "help: '" + word + "' is neither a verb nor a topic" + didYouMean(word, names) +
           " (orv help lists all)";
}

std::string topicHelp(const HelpTopic& topic) {
    std::string title = std::string(topic.name) + ": " + std::string(topic.summary) + "\n\n";
    return title + helpParagraphs(topic.text());
}

ExitCode completionsCommand(const Verb& verb, const Words& words) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (error.empty() && line.words.empty()) {
        error = missingWord(verb, "the shell, bash, zsh or fish,");
    }
    if (error.empty() && line.words.size() > 1) {
        error = wordTooMany(verb, line.words[1]);
    }
    const std::string shell = error.empty() ? line.words.front() : std::string();
    const std::string text = completionsFor(shell);
    if (error.empty() && text.empty()) {
        error = "completions: '" + shell + "' is not known" +
                didYouMean(shell, completionShells()) + " (expected bash, zsh or fish)";
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    print(text);
    return ExitCode::Done;
}

}  // namespace

ExitCode helpCommand(const Verb& verb, const Words& words) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (error.empty() && line.words.size() > 1) {
        error = wordTooMany(verb, line.words[1]);
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    if (line.given("man")) {
        print(manPage());
        return ExitCode::Done;
    }
    if (line.words.empty()) {
        print(generalHelp());
        return ExitCode::Done;
    }
    const Verb* const subject = findVerb(line.words.front());
    const HelpTopic* const topic = findTopic(line.words.front());
    if (subject == nullptr && topic == nullptr) {
        return fail(ExitCode::Usage, unknownSubject(line.words.front()));
    }
    const HelpLength length = line.given("all") ? HelpLength::Full : HelpLength::Short;
    print(subject != nullptr ? verbHelp(*subject, length) : topicHelp(*topic));
    return ExitCode::Done;
}

bool answerHelp(const Verb& verb, const Words& words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    const auto asked = std::find_if(words.begin(), end, [](const std::string& word) {
        return word == "--help" || word == "-h" || word == "--help=all";
    });
    if (asked == end) {
        return false;
    }
    // In a chain the help is that of the method it stands with.
    const Verb* subject = &verb;
    for (auto word = words.begin(); word != asked; ++word) {
        if (*word == "," && findVerb(*std::next(word)) != nullptr) {
            subject = findVerb(*std::next(word));
        }
    }
    const bool all = *asked == "--help=all" || std::find(words.begin(), end, "--all") != end;
    print(verbHelp(*subject, all ? HelpLength::Full : HelpLength::Short));
    return true;
}

Verb helpVerb() {
    Verb verb;
    verb.name = "help";
    verb.summary = "List verbs and topics, or tell about one of them";
    verb.words = "[VERB|TOPIC]";
    verb.groups = {&kHelpPages, &kHelpOptions};
    verb.example = "orv help restore --all";
    verb.run = helpCommand;
    return verb;
}

Verb completionsVerb() {
    Verb verb;
    verb.name = "completions";
    verb.summary = "Print a script by which bash, zsh or fish completes orv's command lines";
    verb.words = "bash|zsh|fish";
    verb.groups = {&kHelpOptions};
    verb.notes =
        "To try it:\n"
        "  bash  source <(orv completions bash)\n"
        "  zsh   source <(orv completions zsh)    after compinit\n"
        "  fish  orv completions fish | source\n"
        "\n"
        "An installed orv brings the scripts along.";
    verb.example = "orv completions bash > ~/.local/share/bash-completion/completions/orv";
    verb.run = completionsCommand;
    return verb;
}

}  // namespace orv::cli
