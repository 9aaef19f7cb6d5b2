#include "commands/inspect_command.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "files/input_files.h"
#include "help/help_text.h"
#include "inspect/inspection.h"
#include "memory/memory_limit.h"
#include "options/command_line.h"
#include "terminal/interruption.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

constexpr std::array<Option, 3> kOptions{{
    {"json", '\0', OptionKind::Flag, "", "", "as JSON text, for programs"},
    {"max-memory", '\0', OptionKind::Value, "SIZE", "a size such as 2G, 500M or 75%",
     "mark the methods that need more [default: 75% of what is free]"},
    {"help", 'h', OptionKind::Flag, "", "", "show this"},
}};
constinit const OptionGroup kInspectOptions{"Options", kOptions};

constexpr std::string_view kAbout =
    "Size, depth, colour profile, orientation and metadata come from the head of the file. "
    "Noise "
    "is the standard deviation in grey levels from 0 to 255, measured on the finest diagonal "
    "details; texture, strong JPEG and enlarging mislead it. The suggested command removes it. "
    "Memory is the peak of each method with its defaults.";

/// What the command line asks for.
struct Request {
    std::vector<InputFile> files;
    std::vector<std::string> notes;
    std::optional<double> limit;
    bool json = false;
};

std::string readRequest(const Verb& verb, const CommandLine& line, Request& request) {
    request.json = line.given("json");
    if (line.words.empty()) {
        return missingWord(verb, "the picture to read");
    }
    return readMemorySize(line.text("max-memory"), availableMemory(), request.limit);
}

ExitCode tell(const Request& request) {
    std::vector<Inspection> all;
    int failed = 0;
    for (const InputFile& file : request.files) {
        Inspection inspection = inspect(file.path, request.limit);
        if (!inspection.error.empty()) {
            ++failed;
            fail(ExitCode::Input, inspection.error);
        } else if (!request.json) {
            print((static_cast<int>(all.size()) > failed ? "\n" : "") +
                  inspectionText(inspection));
        }
        all.push_back(std::move(inspection));
    }
    if (request.json) {
        print(inspectionsAsJson(all));
    }
    if (failed == 0) {
        return ExitCode::Done;
    }
    return static_cast<std::size_t>(failed) == all.size() ? ExitCode::Input
                                                          : ExitCode::SomeFailed;
}

ExitCode inspectCommand(const Verb& verb, const Words& words) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (error.empty() && line.given("help")) {
        print(verbHelp(verb));
        return ExitCode::Done;
    }
    Request request;
    if (error.empty()) {
        error = readRequest(verb, line, request);
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    error = expandInputs(line.words, {}, request.files, request.notes);
    if (!error.empty()) {
        return fail(ExitCode::Input, error);
    }
    for (const std::string& note : request.notes) {
        warn(note);
    }
    watchInterruptions();
    return tell(request);
}

}  // namespace

Verb inspectVerb() {
    Verb verb;
    verb.name = "inspect";
    verb.summary = "Tell what a picture is, how noisy it is, and what each method needs";
    verb.words = "IN...";
    verb.groups = {&kInspectOptions};
    verb.about = kAbout;
    verb.example = "orv inspect scan.tif";
    verb.run = inspectCommand;
    return verb;
}

}  // namespace orv::cli
