// Holds a built library to the golden table: same pixels, same text, same progress values.
#include <cstdio>

#include "case_run.h"
#include "golden_table.h"
#include "library.h"
#include "platform.h"
#include "runner_options.h"
#include "text_parts.h"

namespace golden {
namespace {

constexpr int kSkipped = 77;
constexpr int kUnusable = 2;
constexpr std::size_t kLinesShown = 6;
constexpr int kColumnsShown = 72;

void printText(const char* title, const std::string& text) {
    const std::vector<std::string> lines = parts(text, '\n');
    std::printf("    %s:\n", title);
    for (std::size_t i = 0; i < lines.size() && i < kLinesShown; ++i) {
        std::printf("      | %.*s\n", kColumnsShown, lines[i].c_str());
    }
    if (lines.size() > kLinesShown) {
        std::printf("      | ... %zu lines in all\n", lines.size());
    }
}

/// Prints what no call may do. Returns whether there is nothing.
bool isFaultless(const Case& one, const Observation& seen, std::FILE* file) {
    for (const std::string& fault : seen.faults) {
        std::fprintf(file, "%s: %s\n", one.name.c_str(), fault.c_str());
    }
    return seen.faults.empty();
}

/// Prints what differs. Returns whether nothing does.
bool agrees(const Case& one, const Observation& seen) {
    bool equal = true;
    for (const OutcomeField& field : kOutcomeFields) {
        const std::string& expected = one.expected.*field.value;
        const std::string& got = seen.outcome.*field.value;
        if (expected == got) {
            continue;
        }
        equal = false;
        std::printf("%s: %s\n    expected %s\n    got      %s\n", one.name.c_str(), field.title,
                    expected.c_str(), got.c_str());
        if (field.value == &Outcome::out || field.value == &Outcome::err) {
            printText("text", field.value == &Outcome::out ? seen.outText : seen.errText);
        }
    }
    return equal;
}

/// Runs the cases. Returns the exit code.
int runAll(const RunnerOptions& options, const Library& library, const std::vector<Case>& cases,
           Streams& streams) {
    std::FILE* const file = options.write ? stderr : stdout;
    int passed = 0;
    int failed = 0;
    if (options.write) {
        std::printf("%s\n", tableHeader().c_str());
    }
    for (const Case& one : cases) {
        if (one.name.find(options.only) == std::string::npos) {
            if (options.write) {
                std::printf("%s\n", tableLine(one, one.expected).c_str());
            }
            continue;
        }
        if (options.trace) {
            std::fprintf(stderr, "%s\n", one.name.c_str());
        }
        const Observation seen = runCase(library, one, streams);
        if (!seen.understood) {
            std::fprintf(stderr, "%s: its line asks for something unknown\n", one.name.c_str());
            return kUnusable;
        }
        bool good = isFaultless(one, seen, file);
        if (options.write) {
            std::printf("%s\n", tableLine(one, seen.outcome).c_str());
        } else {
            good = agrees(one, seen) && good;
        }
        ++(good ? passed : failed);
    }
    std::fprintf(file, "%d passed, %d failed\n", passed, failed);
    return failed == 0 && passed > 0 ? 0 : 1;
}

int run(int count, char** values) {
    RunnerOptions options;
    if (!readOptions(count, values, options)) {
        std::fputs(kUsage, stderr);
        return kUnusable;
    }
    const std::string lack = lackOf(options.target);
    if (!lack.empty()) {
        std::printf("skipped: %s\n0 passed, 0 failed, 1 skipped\n", lack.c_str());
        return kSkipped;
    }
    if (!options.target.empty()) {
        setVariable("ORV_MAX_TARGET", options.target.c_str());
    }
    std::vector<Case> cases;
    Library library;
    std::string error;
    if (!readTable(options.table.c_str(), cases, error) ||
        !openLibrary(options.library.c_str(), library, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return kUnusable;
    }
    Streams streams;
    if (!streams.out.works() || !streams.err.works()) {
        std::fprintf(stderr, "no temporary file can be made\n");
        return kUnusable;
    }
    if (options.write) {
        keepLineEndsOfOutput();
    }
    return runAll(options, library, cases, streams);
}

}  // namespace
}  // namespace golden

int main(int count, char** values) {
    return golden::run(count, values);
}
