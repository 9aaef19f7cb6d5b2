#include <sys/stat.h>

#include <cstdio>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "commands/commands.h"
#include "help_text.h"
#include "image_file.h"
#include "messages.h"
#include "methods/method_catalogue.h"
#include "methods/suggestion.h"

namespace {

using orv::cli::ExitCode;

ExitCode unknownVerb(std::string_view word) {
    std::vector<std::string_view> names{"solve", "methods", "solvers", "--help", "--version"};
    for (const orv::Method* const method : orv::methodCatalogue()) {
        names.push_back(method->name);
    }
    const char* const kind = !word.empty() && word[0] == '-' ? "option" : "verb";
    return orv::cli::fail(ExitCode::Usage,
                          "unknown " + std::string(kind) + " '" + std::string(word) + "'" +
                              orv::didYouMean(word, names) + " (orv --help lists all)");
}

/// The user's words after the first, as they would follow a verb.
std::string wordsAfter(int argc, const char* const* argv) {
    std::string words;
    for (int i = 2; i < argc; ++i) {
        words += " " + std::string(argv[i]);
    }
    return words;
}

bool looksLikePicture(const char* word) {
    struct stat status {};
    return orv::cli::formatOfName(word) != nullptr ||
           (stat(word, &status) == 0 && S_ISREG(status.st_mode));
}

ExitCode help(int argc, const char* const* argv) {
    const std::string text = argc > 2 ? orv::cli::verbHelp(argv[2]) : orv::cli::generalHelp();
    if (text.empty()) {
        return unknownVerb(argv[2]);
    }
    orv::cli::print(text);
    return ExitCode::Done;
}

ExitCode dispatch(int argc, const char* const* argv) {
    if (argc < 2) {
        return orv::cli::fail(ExitCode::Usage,
                              "a verb is missing (usage: orv VERB [arguments]); orv --help "
                              "lists all");
    }
    const std::string_view verb = argv[1];
    if (verb == "--help" || verb == "-h" || verb == "help") {
        return help(argc, argv);
    }
    if (verb == "--version") {
        orv::cli::print(orv::cli::versionText());
        return ExitCode::Done;
    }
    if (verb == "solve") {
        return orv::cli::solveCommand(argc - 1, argv + 1);
    }
    if (verb == "methods") {
        return orv::cli::methodsCommand(argc - 1, argv + 1);
    }
    if (verb == "solvers") {
        return orv::cli::solversCommand(argc - 1, argv + 1);
    }
    const orv::Method* const method = orv::findMethod(verb);
    if (method == nullptr && looksLikePicture(argv[1])) {
        return orv::cli::fail(ExitCode::Usage,
                              "'" + std::string(verb) +
                                  "' is a file name, not a verb; did you mean 'orv restore " +
                                  std::string(verb) + wordsAfter(argc, argv) + "'?");
    }
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
    // A long text is written before the flush, so that a full disk shows in the stream alone.
    const bool unwritten = std::fflush(stdout) != 0 || std::ferror(stdout) != 0;
    if (unwritten && code == ExitCode::Done) {
        code = orv::cli::fail(ExitCode::File, "standard output can't be written");
    }
    return static_cast<int>(code);
}
