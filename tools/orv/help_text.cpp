#include "help_text.h"

#include <algorithm>
#include <cstddef>

#include "commands/command_line.h"
#include "commands/solve_options.h"
#include "image_file.h"
#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"

namespace orv::cli {

namespace {

constexpr std::size_t kColumn = 32;
constexpr std::size_t kWidth = 80;
/// Stands for a space at which no line is broken.
constexpr char kJoin = '\x1f';
/// Longer lists of choices have a verb of their own.
constexpr std::size_t kShownChoices = 10;

/// "  left      right", with the right side wrapped under itself.
std::string row(const std::string& left, const std::string& right) {
    std::string text = "  " + left;
    if (text.size() + 2 > kColumn) {
        text += "\n" + std::string(kColumn, ' ');
    } else {
        text.resize(kColumn, ' ');
    }
    std::size_t at = kColumn;
    std::size_t from = 0;
    while (from < right.size()) {
        const std::size_t end = std::min(right.find(' ', from), right.size());
        const std::size_t length = end - from;
        if (at > kColumn && at + 1 + length > kWidth) {
            text += "\n" + std::string(kColumn, ' ');
            at = kColumn;
        } else if (at > kColumn) {
            text += ' ';
            ++at;
        }
        std::string word = right.substr(from, length);
        std::replace(word.begin(), word.end(), kJoin, ' ');
        text += word;
        at += length;
        from = end + 1;
    }
    return text + "\n";
}

std::string joined(std::string text) {
    std::replace(text.begin(), text.end(), ' ', kJoin);
    return text;
}

std::string range(const Parameter& parameter) {
    switch (parameter.kind) {
        case ParameterKind::Flag:
            return {};
        case ParameterKind::Choice:
            return " " + joined("[default: " + defaultText(parameter) + "]");
        case ParameterKind::Real:
        case ParameterKind::Integer:
            break;
    }
    return "; " + joined(numberText(parameter.from) + " to " + numberText(parameter.to)) + " " +
           joined("[default: " + defaultText(parameter) + "]");
}

std::string choiceRows(const Parameter& parameter) {
    std::string text;
    const std::span<const Choice> choices = parameter.choices();
    if (choices.size() > kShownChoices) {
        return text;
    }
    for (const Choice& candidate : choices) {
        text += row("    " + std::string(candidate.name), std::string(candidate.help));
    }
    return text;
}

std::string parameterRows(std::span<const Parameter> parameters) {
    std::string text;
    for (const Parameter& parameter : parameters) {
        const std::string value = placeholder(parameter);
        text += row("--" + std::string(parameter.name) + (value.empty() ? "" : " " + value),
                    std::string(parameter.help) + range(parameter));
        if (parameter.kind == ParameterKind::Choice) {
            text += choiceRows(parameter);
        }
    }
    return text;
}

/// What happens to a picture between the files, in lines of at most 80 characters.
constexpr std::string_view kVipsNotes =
    "8 and 16 bits, grey or colour, and float TIFF. Alpha stays untouched; colour\n"
    "profile, EXIF and XMP are kept. CMYK becomes sRGB, a palette becomes RGB, and\n"
    "EXIF rotation is applied. JPEG is written at quality 92 with full colour\n"
    "resolution, WebP at quality 92; both make 8 bits of 16.\n";

constexpr std::string_view kStudyLegend =
    "Status of a solver:\n"
    "  converged   stopped by its own test or came to rest, as exact as it can be\n"
    "  limit       used all iterations, or stopped short of its tolerance\n"
    "  broke down  gave samples that are no numbers\n"
    "  wrong       left more than half of the error it began with, or never moved\n"
    "  skipped     wasn't run, for the reason that is told\n\n"
    "The line (exact as floats) is the exact solution rounded to floats: no solver\n"
    "can do better. Only the first time step is studied, on the brightness alone: a\n"
    "solver that does well there may still break down in a later step.\n";

constexpr std::string_view kExitCodes =
    "Exit codes:\n"
    "  0  done\n"
    "  1  the method refused or failed\n"
    "  2  the command line is wrong\n"
    "  3  a file can't be read or written\n";

/// "restore IN OUT"
std::string usageOf(const Method& method) {
    return std::string(method.name) + " " + fileWords(method.picture, method.secondPicture);
}

bool takesSolver(const Method& method) {
    return std::any_of(method.parameters.begin(), method.parameters.end(),
                       [](const Parameter& parameter) { return parameter.name == "solver"; });
}

std::string pictureFiles() {
    return "\nPicture files: " + writableExtensions() + "\n";
}

}  // namespace

std::string generalHelp() {
    std::string text =
        "orv restores and enhances pictures by numerical methods\n"
        "\n"
        "Usage: orv VERB [arguments]\n"
        "\n"
        "Verbs:\n";
    for (const Method* const method : methodCatalogue()) {
        text += row(usageOf(*method), std::string(method->summary));
    }
    text += row("solve IN", std::string(kSolveSummary));
    text += row("methods", "list the methods and their parameters, with --json for programs");
    text += row("solvers", "list the linear solvers that --solver takes, also with --json");
    text +=
        "\n"
        "Options:\n";
    text += row("-h, --help", "show this; " + joined("orv VERB --help") + " or " +
                                  joined("orv help VERB") + " tells about a verb");
    text += row("--version", "show the version");
    text += pictureFiles() + "\n";
    text += kExitCodes;
    return text;
}

std::string methodHelp(const Method& method) {
    std::string text(method.summary);
    text += "\n\nUsage: orv " + usageOf(method) + " [options]\n\nMethod:\n";
    text += parameterRows(method.parameters);
    text += "\nFiles and messages:\n";
    text += row("-f, --force",
                "overwrite OUT if it exists; OUT may then be " + std::string(method.picture));
    text += row("-q, --quiet", "errors alone: no progress, warnings or result line");
    text += row("-h, --help", "show this");
    text += pictureFiles();
    if (haveVips()) {
        text += kVipsNotes;
    }
    text += "\norv methods lists the methods in short";
    text += takesSolver(method) ? ", orv solvers the names for --solver.\n\n" : ".\n\n";
    text += kExitCodes;
    text += "\nLiterature:\n";
    for (const std::string_view line : method.literature) {
        text += "  " + std::string(line) + "\n";
    }
    return text;
}

std::string verbHelp(std::string_view verb) {
    if (verb == "solve") {
        return solveHelp();
    }
    if (verb == "methods") {
        return methodsHelp();
    }
    if (verb == "solvers") {
        return solversHelp();
    }
    const Method* const method = findMethod(verb);
    return method == nullptr ? std::string() : methodHelp(*method);
}

std::string solveHelp() {
    const Syntax syntax = solveSyntax();
    std::string text =
        "Compare the linear solvers on the system of a picture: what each residual,\n"
        "solution and time really is, by iteration\n"
        "\n"
        "The system is that of the first time step of orv restore with the same values,\n"
        "on the brightness (Rec. 601, 0 to 255) of the middle of the picture. Each solver\n"
        "runs with growing iteration limits, and each result is compared in double\n"
        "precision with the exact solution.\n"
        "\n"
        "Usage: orv solve IN [options]\n"
        "\n"
        "Study:\n";
    for (const TextOption& option : syntax.texts) {
        text += row("--" + std::string(option.name) + " " + std::string(option.placeholder),
                    std::string(option.help));
    }
    text += parameterRows(syntax.parameters);
    text += "\nFiles and messages:\n";
    text +=
        row("-o, --output FILE",
            "write a report: .html is a page with plots that needs nothing else, .csv has a "
            "line for each solver and limit, .json has all");
    text += row("-f, --force", "overwrite FILE if it exists");
    text += row("-q, --quiet", "no progress, and no table where FILE is named");
    text += row("-h, --help", "show this");
    text += pictureFiles();
    text += "\n" + std::string(kStudyLegend) + "\n" + std::string(kExitCodes);
    return text;
}

std::string methodsHelp() {
    return "List the methods and their parameters\n\nUsage: orv methods "
           "[options]\n\nOptions:\n" +
           row("--json", "as JSON text: names, units, defaults, ranges, choices, help") +
           row("-h, --help", "show this");
}

std::string solversHelp() {
    return "List the linear solvers: number, name, which schemes it suits,\n"
           "group, description and what to mind\n\n"
           "Usage: orv solvers [options]\n\nOptions:\n" +
           row("--json",
               "as JSON text: id, name, group, description, suitsLines, suitsPlanes, note") +
           row("-h, --help", "show this");
}

std::string versionText() {
    std::string text = "orv " ORV_VERSION;
    if (haveVips()) {
        text += " (" + vipsVersion() + ")";
    }
    return text + "\n";
}

}  // namespace orv::cli
