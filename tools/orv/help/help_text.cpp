#include "help/help_text.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <vector>

#include "files/image_file.h"
#include "help/help_layout.h"
#include "help/option_help.h"
#include "help/topics.h"
#include "options/common_options.h"

namespace orv::cli {

namespace {

/// The lines of a short help.
constexpr std::size_t kShortLines = 40;
/// Where summaries begin in the list of the verbs.
constexpr std::size_t kVerbColumn = 15;

/// What a short help shows; the rest is named alone.
struct Shown {
    std::set<const Option*> options;
    std::size_t notes = 0;  ///< the first so many of the method's
    bool text = true;       ///< the paragraphs at the end
};

/// The number of groups that stand before the parameters: those before the files, or the first.
std::size_t leadingGroups(const Verb& verb) {
    const auto files = std::find(verb.groups.begin(), verb.groups.end(), &kFileOptions);
    return files == verb.groups.end() ? 1
                                      : static_cast<std::size_t>(files - verb.groups.begin());
}

/// The options in the order in which a short help does without them: those that everybody needs,
/// or all others.
std::vector<const Option*> dispensable(const Verb& verb, bool needed) {
    std::vector<const Option*> order;
    for (std::size_t g = verb.groups.size(); g-- > 0;) {
        const OptionGroup& group = *verb.groups[g];
        for (std::size_t i = group.options.size(); i-- > 0;) {
            const Option& option = group.options[i];
            const bool keep =
                g < leadingGroups(verb) || option.name == "output" || option.name == "force";
            if (keep == needed) {
                order.push_back(&option);
            }
        }
    }
    return order;
}

Shown everything(const Verb& verb) {
    Shown shown;
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            shown.options.insert(&option);
        }
    }
    shown.notes = verb.method != nullptr ? verb.method->notes.size() : 0;
    return shown;
}

std::string parameterRows(const Verb& verb, HelpLength length) {
    std::string text;
    for (const Parameter& parameter : verb.parameters) {
        if (length == HelpLength::Short && parameter.rare) {
            continue;
        }
        const bool rows = length == HelpLength::Full && listsChoices(parameter);
        text += helpRow(writtenParameter(parameter), toldParameter(verb, parameter, !rows));
        if (rows) {
            for (const Choice& candidate : parameter.choices()) {
                text +=
                    helpRow("    " + std::string(candidate.name), std::string(candidate.help));
            }
        }
    }
    return text.empty() ? text : "\n" + verb.parametersTitle + ":\n" + text;
}

/// The rows of the groups from `from` to `to`.
std::string groupRows(const Verb& verb, std::size_t from, std::size_t to, const Shown& shown) {
    std::string text;
    for (std::size_t g = from; g < std::min(to, verb.groups.size()); ++g) {
        std::string rows;
        for (const Option& option : verb.groups[g]->options) {
            if (shown.options.count(&option) > 0) {
                rows += helpRow(writtenOption(option), withUnbrokenDefault(option.help));
            }
        }
        text += rows.empty() ? rows : "\n" + std::string(verb.groups[g]->title) + ":\n" + rows;
    }
    return text;
}

/// The options that a short help names alone.
std::string moreOptions(const Verb& verb, const Shown& shown) {
    std::string text;
    const auto add = [&](std::string_view name) {
        text += (text.empty() ? "--" : ", --") + std::string(name);
    };
    for (const Parameter& parameter : verb.parameters) {
        if (parameter.rare) {
            add(parameter.name);
        }
    }
    for (const OptionGroup* const group : verb.groups) {
        for (const Option& option : group->options) {
            if (shown.options.count(&option) == 0) {
                add(option.name);
            }
        }
    }
    return text.empty() ? text
                        : "\nMore options, told by orv help " + verb.name + " --all:\n" +
                              helpParagraphs(text);
}

std::string notesOf(const Verb& verb, const Shown& shown) {
    std::string text =
        verb.notes.empty() || !shown.text ? "" : "\n" + helpParagraphs(verb.notes);
    for (std::size_t i = 0; i < shown.notes; ++i) {
        text += i == 0 ? "\nGood to know:\n" : "";
        text += helpParagraphs("- " + std::string(verb.method->notes[i]), 2);
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
    text += groupRows(verb, 0, leading, shown) + parameterRows(verb, length) +
            groupRows(verb, leading, verb.groups.size(), shown);
    if (length == HelpLength::Short) {
        text += moreOptions(verb, shown);
    }
    text += notesOf(verb, shown);
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
    Shown shown = everything(verb);
    std::string text = composed(verb, length, shown);
    const auto tooLong = [&] {
        text = composed(verb, length, shown);
        return length == HelpLength::Short && lineCount(text) > kShortLines;
    };
    const auto shorten = [&](bool needed) {
        for (const Option* const option : dispensable(verb, needed)) {
            if (!tooLong()) {
                return;
            }
            shown.options.erase(option);
        }
    };
    shorten(/*needed=*/false);
    shown.text = !tooLong();
    while (tooLong() && shown.notes > 1) {
        --shown.notes;
    }
    shorten(/*needed=*/true);
    tooLong();
    return text;
}

std::string versionText() {
    std::string text = "orv " ORV_VERSION;
    if (haveLibrary()) {
        text += " (" + libraryVersion() + ")";
    }
    return text + "\n";
}

}  // namespace orv::cli
