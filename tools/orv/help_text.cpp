#include "help_text.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "help/help_layout.h"
#include "help/option_help.h"
#include "help/topics.h"
#include "image_file.h"
#include "options/common_options.h"

namespace orv::cli {

namespace {

/// The lines of a short help.
constexpr std::size_t kShortLines = 40;
/// Where summaries begin in the list of the verbs.
constexpr std::size_t kVerbColumn = 15;

/// What a short help shows; the rest is named alone.
struct Shown {
    std::size_t options = 0;  ///< the first so many of all groups
    bool notes = true;
};

std::size_t optionCount(const Verb& verb) {
    std::size_t count = 0;
    for (const OptionGroup* const group : verb.groups) {
        count += group->options.size();
    }
    return count;
}

std::string parameterRows(const Verb& verb, HelpLength length) {
    std::string text;
    for (const Parameter& parameter : verb.parameters) {
        if (length == HelpLength::Short && parameter.rare) {
            continue;
        }
        const bool rows = length == HelpLength::Full && listsChoices(parameter);
        text += helpRow(writtenParameter(parameter), toldParameter(parameter, !rows));
        if (rows) {
            for (const Choice& candidate : parameter.choices()) {
                text +=
                    helpRow("    " + std::string(candidate.name), std::string(candidate.help));
            }
        }
    }
    return text.empty() ? text : "\n" + verb.parametersTitle + ":\n" + text;
}

/// The number of groups that stand before the parameters: those before the files, or the first.
std::size_t leadingGroups(const Verb& verb) {
    const auto files = std::find(verb.groups.begin(), verb.groups.end(), &kFileOptions);
    return files == verb.groups.end() ? 1
                                      : static_cast<std::size_t>(files - verb.groups.begin());
}

/// The rows of the groups from `from` to `to`, of the first `shown` options of all alone.
std::string groupRows(const Verb& verb, std::size_t from, std::size_t to, std::size_t shown) {
    std::string text;
    std::size_t i = 0;
    for (std::size_t g = 0; g < std::min(to, verb.groups.size()); ++g) {
        std::string rows;
        for (const Option& option : verb.groups[g]->options) {
            if (i++ < shown && g >= from) {
                rows += helpRow(writtenOption(option), withUnbrokenDefault(option.help));
            }
        }
        text += rows.empty() ? rows : "\n" + std::string(verb.groups[g]->title) + ":\n" + rows;
    }
    return text;
}

/// The options that a short help names alone.
std::string moreOptions(const Verb& verb, std::size_t shown) {
    std::string text;
    const auto add = [&](const std::string& written) {
        text += (text.empty() ? "" : ", ") + unbroken(written);
    };
    for (const Parameter& parameter : verb.parameters) {
        if (parameter.rare) {
            add(writtenParameter(parameter));
        }
    }
    std::size_t i = 0;
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            if (i++ >= shown) {
                add(writtenOption(option));
            }
        }
    }
    return text.empty() ? text
                        : "\nMore options, told by orv help " + verb.name + " --all:\n" +
                              helpParagraphs(text);
}

std::string notesOf(const Verb& verb) {
    std::string text = verb.notes.empty() ? "" : "\n" + helpParagraphs(verb.notes);
    if (verb.method != nullptr && !verb.method->notes.empty()) {
        text += "\nGood to know:\n";
        for (const std::string_view note : verb.method->notes) {
            text += helpParagraphs("- " + std::string(note), 2);
        }
    }
    return text;
}

std::string literatureOf(const Verb& verb) {
    std::string text;
    if (verb.method != nullptr) {
        text += "\nLiterature:\n";
        for (const std::string_view line : verb.method->literature) {
            text += helpParagraphs("- " + std::string(line), 2);
        }
    }
    return text;
}

std::string composed(const Verb& verb, HelpLength length, const Shown& shown) {
    std::string text = helpParagraphs(verb.summary);
    if (!verb.about.empty()) {
        text += "\n" + helpParagraphs(verb.about);
    }
    text += "\nUsage: orv " + writtenVerb(verb) + " [options]\n";
    const std::size_t leading = leadingGroups(verb);
    text += groupRows(verb, 0, leading, shown.options) + parameterRows(verb, length) +
            groupRows(verb, leading, verb.groups.size(), shown.options);
    if (length == HelpLength::Short) {
        text += moreOptions(verb, shown.options);
    }
    if (shown.notes) {
        text += notesOf(verb);
    }
    const std::string example = exampleOf(verb);
    if (!example.empty()) {
        text += "\nExample: " + example + "\n";
    }
    return length == HelpLength::Full ? text + literatureOf(verb) : text;
}

}  // namespace

std::string welcomeText() {
    struct Start {
        std::string_view verb;
        std::string_view command;
        std::string_view result;
    };
    static constexpr Start kStarts[] = {
        {"restore", "orv restore photo.jpg", "less noise, sharp edges: photo.restored.jpg"},
        {"inspect", "orv inspect photo.jpg", "what is in a picture and what would help it"},
        {"compare", "orv compare photo.jpg photo.restored.jpg -o look.html",
         "before and after, side by side"},
        {"batch", "orv batch restore photos -o clean", "a whole folder"},
    };
    std::string text = "orv restores and enhances pictures. To begin with:\n\n";
    for (const Start& start : kStarts) {
        if (findVerb(start.verb) != nullptr) {
            text += "  " + std::string(start.command) + "\n      " + std::string(start.result) +
                    "\n";
        }
    }
    return text + "\norv help lists all verbs and topics; orv VERB --help tells about one.\n";
}

std::string generalHelp() {
    std::string text =
        "orv restores and enhances pictures by numerical methods\n"
        "\n"
        "Usage: orv VERB [arguments]\n"
        "\n"
        "Verbs; orv VERB --help tells about one:\n";
    for (const Verb& verb : verbTable()) {
        text += helpRow(verb.name, verb.summary, kVerbColumn);
    }
    text += "\nTopics; orv help TOPIC tells about one:\n";
    for (const HelpTopic& topic : helpTopics()) {
        text += helpRow(std::string(topic.name), std::string(topic.summary), kVerbColumn);
    }
    text += "\nOptions:\n";
    text += helpRow("-h, --help", "show this", kVerbColumn);
    text += helpRow("--version", "show the version", kVerbColumn);
    return text;
}

std::string verbHelp(const Verb& verb, HelpLength length) {
    Shown shown{optionCount(verb), true};
    if (length == HelpLength::Full) {
        return composed(verb, length, shown);
    }
    std::string text = composed(verb, length, shown);
    while (lineCount(text) > kShortLines && shown.options > 0) {
        --shown.options;
        text = composed(verb, length, shown);
    }
    if (lineCount(text) > kShortLines) {
        shown.notes = false;
        text = composed(verb, length, shown);
    }
    return text;
}

std::string versionText() {
    std::string text = "orv " ORV_VERSION;
    if (haveVips()) {
        text += " (" + vipsVersion() + ")";
    }
    return text + "\n";
}

}  // namespace orv::cli
