#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <string>

#include "commands/commands.h"
#include "commands/help_verbs.h"
#include "files/image_file.h"
#include "help/help_text.h"
#include "memory/memory_limit.h"
#include "options/verb.h"
#include "system/console.h"
#include "system/file_system.h"
#include "terminal/messages.h"
#include "terminal/shell_text.h"

namespace {

using orv::cli::ExitCode;
using orv::cli::Words;

ExitCode unknownVerb(const std::string& word) {
    const char* const kind = !word.empty() && word[0] == '-' ? "option" : "verb";
    return orv::cli::fail(ExitCode::Usage, "unknown " + std::string(kind) + " '" + word + "'" +
                                               orv::cli::didYouMeanVerb(word) +
                                               " (orv --help lists all)");
}

bool looksLikePicture(const std::string& word) {
    return orv::cli::formatOfName(word) != nullptr || orv::cli::isRegularFile(word);
}

ExitCode dispatch(const Words& all) {
    if (all.empty()) {
        std::fputs(orv::cli::welcomeText().c_str(), stderr);
        return ExitCode::Usage;
    }
    const std::string& word = all.front();
    const Words words(std::next(all.begin()), all.end());
    if (word == "--help" || word == "-h") {
        return orv::cli::helpCommand(*orv::cli::findVerb("help"), words);
    }
    if (word == "--version") {
        orv::cli::print(orv::cli::versionText());
        return ExitCode::Done;
    }
    const orv::cli::Verb* const verb = orv::cli::findVerb(word);
    if (verb != nullptr && verb->run == orv::cli::batchCommand && !words.empty() &&
        words.front()[0] != '-') {
        return verb->run(*verb, words);  // It tells about the verb that it runs.
    }
    if (verb != nullptr) {
        return orv::cli::answerHelp(*verb, words) ? ExitCode::Done : verb->run(*verb, words);
    }
    if (looksLikePicture(word)) {
        return orv::cli::fail(ExitCode::Usage,
                              "'" + word + "' is a file name, not a verb; did you mean '" +
                                  orv::cli::commandText("restore", all) + "'?");
    }
    return unknownVerb(word);
}

/// Why standard output can't be written, or an empty text.
std::string outputFailure() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return {};
    }
    // A long text was written before this flush, and its reason is gone: another try tells.
    std::clearerr(stdout);
    errno = 0;
    std::fputc('\n', stdout);
    std::fflush(stdout);
    return errno != 0 ? std::strerror(errno) : "it was cut short";
}

}  // namespace

int main(int argc, char** argv) {
    orv::cli::returnFreedMemory();
    ExitCode code = ExitCode::Refused;
    try {
        code = dispatch(orv::cli::startProgram(argc, argv));
    } catch (const std::bad_alloc&) {
        code = orv::cli::fail(ExitCode::Memory, "not enough memory for this picture");
    } catch (const std::exception& problem) {
        code = orv::cli::fail(ExitCode::Refused, std::string("unexpected: ") + problem.what());
    }
    const std::string unwritten = outputFailure();
    if (!unwritten.empty() && code == ExitCode::Done) {
        code =
            orv::cli::fail(ExitCode::Output, "standard output can't be written: " + unwritten);
    }
    return static_cast<int>(code);
}
