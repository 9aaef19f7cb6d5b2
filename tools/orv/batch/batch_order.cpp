#include "batch/batch_order.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "batch/batch_options.h"
#include "batch/file_stamp.h"
#include "commands/chain.h"
#include "help/help_text.h"
#include "memory/memory_limit.h"
#include "options/common_options.h"
#include "pipeline/job_options.h"
#include "recipe/presets.h"
#include "system/console.h"
#include "terminal/messages.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

constexpr int kMostJobs = 256;

/// Options that say where and how to run, not what to do with a picture.
constexpr std::array<std::string_view, 9> kOfRunning{
    "output", "force", "recipe", "compare", "max-memory", "progress", "quiet", "help", "with"};

bool isOfRunning(std::string_view name) {
    const auto isName = [name](const Option& option) { return option.name == name; };
    const auto own = kBatchOptions.options;
    return std::find(kOfRunning.begin(), kOfRunning.end(), name) != kOfRunning.end() ||
           std::any_of(own.begin(), own.end(), isName);
}

/// "--name=value", or "--name" for a flag.
std::string written(bool flag, const std::string& name, const std::string& text) {
    return "--" + name + (flag ? "" : "=" + text);
}

/// The verb and what it is told, as words for a worker.
Words workerWords(const Verb& verb, const std::string& name, const CommandLine& part) {
    Words words{name};
    for (const auto& [parameter, text] : part.parameters) {
        const bool flag = verb.parameter(parameter)->kind == ParameterKind::Flag;
        words.push_back(written(flag, parameter, text));
    }
    for (const auto& [option, text] : part.options) {
        const Option* const known = verb.option(option);
        if (option == "with" || !isOfRunning(option)) {
            words.push_back(written(known->kind == OptionKind::Flag, option, text));
        }
    }
    return words;
}

/// The same words for the same work: numbers in one form, files with their stamps.
std::string requestText(const Verb& verb, const std::string& name, const CommandLine& part,
                        const std::string& second) {
    std::string text = name;
    for (const auto& [parameter, given] : part.parameters) {
        const Parameter& known = *verb.parameter(parameter);
        double value = 0.0;
        const bool flag = known.kind == ParameterKind::Flag;
        text += " --" + parameter;
        if (!flag && parseValue(known, given, value).empty()) {
            text += " " + shellWord(valueText(known, value));
        }
    }
    for (const auto& [option, given] : part.options) {
        if (!isOfRunning(option)) {
            const bool flag = verb.option(option)->kind == OptionKind::Flag;
            text += " --" + option + (flag ? "" : " " + shellWord(given));
        }
    }
    if (!second.empty()) {
        FileStamp stamp;
        readStamp(second, stamp);
        text += " --with " + shellWord(second) + " (" + sizeText(stamp.bytes) + ", " +
                stamp.modified + ")";
    }
    return text;
}

std::string wholeNumber(const std::string& text, int& value) {
    const char* const end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, value);
    if (problem != std::errc() || stop != end || value < 1 || value > kMostJobs) {
        return "--jobs: '" + text + "' is not a whole number from 1 to " +
               std::to_string(kMostJobs);
    }
    return {};
}

/// The parts of "*.jpg,*.png".
std::vector<std::string> listed(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t end = std::min(text.find(',', from), text.size());
        if (end > from) {
            parts.push_back(text.substr(from, end - from));
        }
        from = end + 1;
    }
    return parts;
}

/// Reads what is the batch's own, and refuses what makes no sense for many pictures.
std::string readOwn(const CommandLine& line, BatchOrder& order) {
    order.folder = line.text("output");
    order.resume = line.given("resume");
    order.recursive = line.given("recursive");
    order.include = listed(line.text("include"));
    order.name = line.text("name");
    order.report = line.text("report");
    order.jobs = std::clamp(processorCount(), 1, kMostJobs);
    if (line.given("recipe")) {
        return "--recipe: a batch writes a recipe for each picture, into .orv in the folder of "
               "the results; leave it out";
    }
    if (line.given("compare")) {
        return "--compare: is for one picture; --report FILE.html shows all of a batch, before "
               "and after";
    }
    if (order.folder == "-") {
        return "-o -: a batch writes into a folder, not to standard output; name one";
    }
    if (!order.report.empty() && !endsInHtml(order.report)) {
        return "--report: '" + order.report +
               "' is no page (expected a file that ends in .html)";
    }
    std::string error =
        readMemorySize(line.text("max-memory"), availableMemory(), order.memory);
    if (error.empty() && line.given("jobs")) {
        error = wholeNumber(line.text("jobs"), order.jobs);
    }
    return error;
}

std::string takeOptions(const CommandLine& line, BatchOrder& order) {
    JobOptions options;
    std::string error = readJobOptions(line, options);
    order.format = options.format;
    order.force = options.force;
    order.quiet = options.quiet;
    order.progress = options.progress;
    return error.empty() ? readOwn(line, order) : error;
}

/// The verb as it is within a batch, for help and messages.
Verb batchForm(const Verb& verb) {
    Verb form = verb;
    form.name = "batch " + verb.name;
    form.words = verb.method == nullptr ? "RECIPE IN... -o DIR" : "IN... -o DIR";
    return form;
}

/// The help of a verb with what a batch has in the place of what is for one picture.
std::string helpOf(Verb form) {
    const auto isTarget = [](const Option& option) {
        return option.name == "output" || option.name == "force";
    };
    std::vector<Option> writing(kFileOptions.options.begin(), kFileOptions.options.end());
    writing.erase(std::remove_if(writing.begin(), writing.end(), isTarget), writing.end());
    const OptionGroup files{kFileOptions.title, writing};
    std::vector<const OptionGroup*> groups;
    for (const OptionGroup* const group : form.groups) {
        if (group == &kFileOptions) {
            groups.insert(groups.end(), {&kBatchTargetOptions, &kBatchOptions, &files});
        } else if (group != &kRecordOptions) {
            groups.push_back(group);
        }
    }
    form.groups = groups;
    std::string text = verbHelp(form);
    // The rest is told by the help of the verb itself.
    const std::string wrong = "orv help " + form.name + " --all";
    const std::size_t at = text.find(wrong);
    if (at != std::string::npos) {
        text.erase(at + std::string("orv help ").size(), std::string("batch ").size());
    }
    return text;
}

/// Methods, and chains of them.
std::string readMethods(const Verb& verb, const Verb& form, const Words& words,
                        BatchOrder& order) {
    Chain chain;
    std::string error = readChain(form, words, chain, &kBatchOptions);
    if (!error.empty()) {
        return error;
    }
    if (chain.help != nullptr) {
        order.help = chain.help == &form ? helpOf(form) : verbHelp(*chain.help);
        return {};
    }
    for (std::size_t i = 0; i < chain.parts.size(); ++i) {
        const Verb& part = i == 0 ? verb : *findVerb(chain.steps[i].method->name);
        const std::string& second = chain.steps[i].second;
        order.parts.push_back(workerWords(part, part.name, chain.parts[i]));
        if (i > 0 && !second.empty() && !chain.parts[i].given("with")) {
            order.parts.back().push_back("--with=" + second);
        }
        order.request +=
            (i == 0 ? "" : " , ") + requestText(part, part.name, chain.parts[i], second);
        for (std::string& warning : warningsOf(chain.steps[i])) {
            order.warnings.push_back(std::move(warning));
        }
    }
    order.inputs = chain.line.words;
    return takeOptions(chain.line, order);
}

/// A recipe on many pictures. Workers get a copy of it without the pixels that it names, which
/// are those of one picture.
Failure readRun(const Verb& verb, const Verb& form, const Words& words, BatchOrder& order) {
    Verb read = form;
    read.groups.push_back(&kBatchOptions);
    CommandLine line;
    std::string error = readCommandLine(read, words, line);
    if (!error.empty()) {
        return {ExitCode::Usage, error};
    }
    if (line.given("help")) {
        order.help = helpOf(form);
        return {};
    }
    Recipe recipe;
    ExitCode code = ExitCode::Usage;
    if (line.given("preset")) {
        error = readPreset(line.text("preset"), recipe);
        error = error.empty() ? error : "--preset: " + error;
    } else if (line.words.empty()) {
        error = missingWord(form, "the recipe");
    } else {
        code = ExitCode::Input;
        error = readRecipeFile(line.words.front(), recipe);
        line.words.erase(line.words.begin());
    }
    if (!error.empty()) {
        return {code, error};
    }
    recipe.input.reset();
    recipe.output.reset();
    recipe.request.clear();
    order.recipe = writeRecipe(recipe);
    const auto isPreset = [](const auto& option) { return option.first == "preset"; };
    line.options.erase(std::remove_if(line.options.begin(), line.options.end(), isPreset),
                       line.options.end());
    order.parts.push_back(workerWords(verb, verb.name, line));
    order.request = requestText(verb, verb.name, line, "") + ": " + chainText(recipe.steps);
    for (const auto& [name, text] : recipe.options) {
        order.request += " --" + name + " " + text;
    }
    order.inputs = line.words;
    error = takeOptions(line, order);
    return error.empty() ? Failure{} : Failure{ExitCode::Usage, error};
}

}  // namespace

bool endsInHtml(std::string_view path) {
    const std::size_t dot = path.find_last_of('.');
    const std::string_view ending = dot == path.npos ? std::string_view() : path.substr(dot);
    return ending == ".html" || ending == ".htm";
}

Failure readBatchOrder(const Verb& batch, const Words& words, BatchOrder& order) {
    if (words.empty()) {
        return {ExitCode::Usage, missingWord(batch, "the verb to run")};
    }
    const std::string& word = words.front();
    if (word == "--help" || word == "-h") {
        order.help = verbHelp(batch);
        return {};
    }
    const Verb* const verb = findVerb(word);
    if (verb == nullptr || (verb->method == nullptr && verb->name != "run")) {
        const bool option = !word.empty() && word[0] == '-';
        return {ExitCode::Usage, option
                                     ? "batch: the verb comes first, before " + word +
                                           " (usage: orv batch VERB IN... -o DIR [options])"
                                     : "batch: '" + word + "' is no method" +
                                           (verb == nullptr ? didYouMeanVerb(word) : "") +
                                           " (orv methods lists them; run replays a recipe)"};
    }
    order.verb = verb->name;
    order.command = commandText(batch.name, words);
    const Words rest(std::next(words.begin()), words.end());
    const Verb form = batchForm(*verb);
    if (verb->method == nullptr) {
        Failure failure = readRun(*verb, form, rest, order);
        if (failure || !order.help.empty()) {
            return failure;
        }
    } else {
        std::string error = readMethods(*verb, form, rest, order);
        if (!error.empty() || !order.help.empty()) {
            return error.empty() ? Failure{} : Failure{ExitCode::Usage, std::move(error)};
        }
    }
    if (order.inputs.empty()) {
        return {ExitCode::Usage, missingWord(form, "the pictures to read")};
    }
    if (order.folder.empty()) {
        return {ExitCode::Usage, missingWord(form, "-o DIR, the folder for the results,")};
    }
    return {};
}

}  // namespace orv::cli
