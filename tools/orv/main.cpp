#include <cstdio>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "commands/commands.h"
#include "help_text.h"
#include "messages.h"
#include "methods/method_catalogue.h"
#include "methods/suggestion.h"

namespace {

using orv::cli::ExitCode;

ExitCode unknownVerb(std::string_view word) {
    std::vector<std::string_view> names{"methods", "solvers", "--help", "--version"};
    for (const orv::Method* const method : orv::methodCatalogue()) {
        names.push_back(method->name);
    }
    const char* const kind = !word.empty() && word[0] == '-' ? "option" : "verb";
    return orv::cli::fail(ExitCode::Usage,
                          "unknown " + std::string(kind) + " '" + std::string(word) + "'" +
                              orv::didYouMean(word, names) + " (orv --help lists all)");
}

ExitCode dispatch(int argc, const char* const* argv) {
    if (argc < 2) {
        return orv::cli::fail(ExitCode::Usage,
                              "a verb is missing (usage: orv VERB [arguments]); orv --help "
                              "lists all");
    }
    const std::string_view verb = argv[1];
    if (verb == "--help" || verb == "-h" || verb == "help") {
        orv::cli::print(orv::cli::generalHelp());
        return ExitCode::Done;
    }
    if (verb == "--version") {
        orv::cli::print(orv::cli::versionText());
        return ExitCode::Done;
    }
    if (verb == "methods") {
        return orv::cli::methodsCommand(argc - 1, argv + 1);
    }
    if (verb == "solvers") {
        return orv::cli::solversCommand(argc - 1, argv + 1);
    }
    const orv::Method* const method = orv::findMethod(verb);
    return method == nullptr ? unknownVerb(verb)
                             : orv::cli::methodCommand(*method, argc - 1, argv + 1);
}

}  // namespace

int main(int argc, char** argv) {
    ExitCode code = ExitCode::Refused;
    try {
        code = dispatch(argc, argv);
    } catch (const std::bad_alloc&) {
        code = orv::cli::fail(ExitCode::Refused, "not enough memory for this picture");
    }
    if (std::fflush(stdout) != 0 && code == ExitCode::Done) {
        code = orv::cli::fail(ExitCode::File, "standard output can't be written");
    }
    return static_cast<int>(code);
}
