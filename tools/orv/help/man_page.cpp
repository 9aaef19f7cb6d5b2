#include "help/man_page.h"

#include <algorithm>
#include <vector>

#include "help/help_layout.h"
#include "help/option_help.h"
#include "help/topics.h"

namespace orv::cli {

namespace {

/// Groups of so many verbs are told once for all.
constexpr std::size_t kManyVerbs = 3;

/// Text as roff prints it letter for letter.
std::string roff(std::string_view text) {
    std::string result;
    bool lineStart = true;
    for (const char c : text) {
        if (lineStart && (c == '.' || c == '\'')) {
            result += "\\&";
        }
        switch (c) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '`':
                result += "\\(ga";
                break;
            case '^':
                result += "\\(ha";
                break;
            case '~':
                result += "\\(ti";
                break;
            default:
                result += c;
        }
        lineStart = c == '\n';
    }
    return plainSpaces(std::move(result));
}

std::string section(const std::string& title) {
    return ".SH " + title + "\n";
}

std::string item(const std::string& left, const std::string& right) {
    return ".TP\n.B " + roff(left) + "\n" + roff(right) + "\n";
}

/// Paragraphs, lists of "- " lines, and lines that begin with a space, which stay as they are.
///
/// `heading` tells that the text begins a section, which opens a paragraph by itself.
std::string body(std::string_view text, bool heading = false) {
    std::string result;
    bool asItIs = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const bool indented = !line.empty() && line.front() == ' ';
        if (asItIs && !indented) {
            result += ".EE\n";
            asItIs = false;
        }
        if (line.empty()) {
            continue;
        }
        if (indented) {
            result += asItIs ? "" : heading && result.empty() ? ".EX\n" : ".PP\n.EX\n";
            asItIs = true;
            result += roff(line) + "\n";
        } else if (line.substr(0, 2) == "- ") {
            result += ".IP \\(bu 2\n" + roff(line.substr(2)) + "\n";
        } else {
            result += (heading && result.empty() ? "" : ".PP\n") + roff(line) + "\n";
        }
    }
    return result + (asItIs ? ".EE\n" : "");
}

std::string optionItems(const OptionGroup& group) {
    std::string text;
    for (const Option& option : group.options) {
        text += item(writtenOption(option), std::string(option.help));
    }
    return text;
}

/// The groups that many verbs have.
std::vector<const OptionGroup*> sharedGroups() {
    std::vector<const OptionGroup*> all;
    for (const Verb& verb : verbTable()) {
        all.insert(all.end(), verb.groups.begin(), verb.groups.end());
    }
    std::vector<const OptionGroup*> shared;
    for (const OptionGroup* const group : all) {
        const auto count = std::count(all.begin(), all.end(), group);
        if (count >= static_cast<std::ptrdiff_t>(kManyVerbs) &&
            std::find(shared.begin(), shared.end(), group) == shared.end()) {
            shared.push_back(group);
        }
    }
    return shared;
}

std::string parameterItems(const Verb& verb) {
    std::string text;
    for (const Parameter& parameter : verb.parameters) {
        text += item(writtenParameter(parameter), toldParameter(verb, parameter, false));
        if (!listsChoices(parameter)) {
            continue;
        }
        text += ".RS\n";
        for (const Choice& candidate : parameter.choices()) {
            text += item(std::string(candidate.name), std::string(candidate.help));
        }
        text += ".RE\n";
    }
    return text;
}

/// The options that the verb has and those that are told elsewhere.
std::string optionsOf(const Verb& verb, const std::vector<const OptionGroup*>& shared) {
    std::string text = parameterItems(verb);
    std::string others;
    for (const OptionGroup* const group : verb.groups) {
        if (std::find(shared.begin(), shared.end(), group) == shared.end()) {
            text += optionItems(*group);
            continue;
        }
        for (const Option& option : group->options) {
            others += (others.empty() ? "" : ", ") + ("--" + std::string(option.name));
        }
    }
    return others.empty()
               ? text
               : text + ".PP\n" + roff("Further options, see SHARED OPTIONS: " + others + ".") +
                     "\n";
}

std::string verbPart(const Verb& verb, const std::vector<const OptionGroup*>& shared) {
    std::string text = ".SS " + roff("orv " + writtenVerb(verb) + " [options]") + "\n";
    text += roff(verb.summary) + ".\n" + body(verb.about) + optionsOf(verb, shared);
    text += body(verb.notes);
    if (verb.method != nullptr) {
        for (const std::string_view note : verb.method->notes) {
            text += body("- " + std::string(note));
        }
    }
    const std::string example = exampleOf(verb);
    if (!example.empty()) {
        text += ".PP\nExample:\n.PP\n.EX\n" + roff("  " + example) + "\n.EE\n";
    }
    if (verb.method != nullptr) {
        text += ".PP\nLiterature:\n";
        for (const std::string_view line : verb.method->literature) {
            text += body("- " + std::string(line));
        }
    }
    return text;
}

std::string upper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c == '-' ? ' ' : c;
    });
    return result;
}

/// The title of a topic's section, as manual pages have it.
std::string titleOf(const HelpTopic& topic) {
    return topic.name == "exit-codes" ? "EXIT STATUS" : upper(topic.name);
}

constexpr std::string_view kFiles =
    "orv keeps no files of its own. While it writes a picture, a file with another name lies "
    "beside the output; it is renamed when it is whole, and removed when the run fails or is "
    "interrupted.";

}  // namespace

std::string manPage() {
    const std::vector<const OptionGroup*> shared = sharedGroups();
    std::string text = ".TH ORV 1 \"\" \"orv " ORV_VERSION "\" \"User commands\"\n";
    text += section("NAME") + "orv \\- restore and enhance pictures by numerical methods\n";
    text += section("SYNOPSIS") +
            ".B orv\n.I VERB\nIN... [OUT] [options] [, VERB [options]]...\n.br\n"
            ".B orv help\n[VERB|TOPIC] [\\-\\-all]\n.br\n.B orv\n\\-\\-version\n";
    text += section("DESCRIPTION") +
            roff(
                "orv restores and enhances pictures: it takes noise away and keeps edges, "
                "sharpens, evens out light, and moves colours. The first word is a verb; most "
                "verbs are methods that read pictures and write new ones beside them. "
                "Originals stay untouched.") +
            "\n";
    text += section("VERBS");
    for (const Verb& verb : verbTable()) {
        text += verbPart(verb, shared);
    }
    text += section("SHARED OPTIONS");
    for (const OptionGroup* const group : shared) {
        text += optionItems(*group);
    }
    for (const HelpTopic& topic : helpTopics()) {
        text += section(titleOf(topic)) + body(topic.text(), /*heading=*/true);
    }
    text += section("FILES") + roff(kFiles) + "\n";
    text += section("EXAMPLES") + ".EX\n";
    for (const Verb& verb : verbTable()) {
        const std::string example = exampleOf(verb);
        text += example.empty() ? example : roff(example) + "\n";
    }
    return text + ".EE\n";
}

}  // namespace orv::cli
