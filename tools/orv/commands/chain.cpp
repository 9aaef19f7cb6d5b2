#include "commands/chain.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "methods/suggestion.h"
#include "pipeline/job_options.h"
#include "system/file_system.h"

namespace orv::cli {

namespace {

/// The parts between the words that are a comma alone.
std::vector<Words> parts(const Words& words) {
    std::vector<Words> result(1);
    for (const std::string& word : words) {
        if (word == ",") {
            result.emplace_back();
        } else {
            result.back().push_back(word);
        }
    }
    return result;
}

/// What is wrong with the first word that has a comma at its end or its head; empty when nothing
/// is.
std::string gluedComma(const Words& words) {
    for (const std::string& word : words) {
        if (word.size() < 2 || (word.front() != ',' && word.back() != ',') ||
            leadsSomewhere(word)) {
            continue;
        }
        const std::string apart = word.front() == ',' ? ", " + word.substr(1)
                                                      : word.substr(0, word.size() - 1) + " ,";
        return "'" + word + "': a comma between methods is a word of its own: '" + apart + "'";
    }
    return {};
}

/// The method that a part after a comma begins with; null with a reason.
const Verb* verbOfPart(const Words& part, std::string& error) {
    if (part.empty()) {
        error = "a verb is missing after ','";
        return nullptr;
    }
    const Verb* const verb = findVerb(part.front());
    if (verb == nullptr || verb->method == nullptr) {
        error = "',' is followed by '" + part.front() + "', which is no method" +
                (verb == nullptr ? didYouMeanVerb(part.front()) : std::string()) +
                " (orv methods lists them)";
        return nullptr;
    }
    return verb;
}

/// Puts the options of a part to those before.
std::string addOptions(const CommandLine& part, CommandLine& whole) {
    for (const auto& option : part.options) {
        if (whole.given(option.first) && option.first != "with") {
            return "--" + option.first + ": is given 2 times; give it once";
        }
        if (option.first != "with") {
            whole.options.push_back(option);
        }
    }
    return {};
}

/// Takes the second picture from --with, or from the words of a part.
///
/// `first` tells that the picture to restore comes before it.
std::string takeSecond(const Verb& verb, bool first, CommandLine& line, std::string& second) {
    if (verb.method->secondPicture.empty()) {
        return {};
    }
    const std::size_t at = first ? 1 : 0;
    if (line.given("with")) {
        second = line.text("with");
        return {};
    }
    if (line.words.size() <= at) {
        return line.words.size() < at
                   ? std::string()
                   : missingWord(verb, "the second picture, " +
                                           std::string(verb.method->secondPicture) + ",");
    }
    second = line.words[at];
    line.words.erase(line.words.begin() + static_cast<std::ptrdiff_t>(at));
    return {};
}

std::string readPart(const Verb& verb, const Words& words, bool first, Chain& chain,
                     CommandLine& line, const OptionGroup* batch) {
    Verb read = verb;
    if (batch != nullptr) {
        read.groups.push_back(batch);
    }
    std::string error = readCommandLine(read, words, line);
    if (!error.empty()) {
        return error;
    }
    chain.parts.push_back(line);
    if (line.given("help")) {
        chain.help = &verb;
        return {};
    }
    Step step{verb.method, Arguments(verb.method->parameters), {}};
    error = setParameters(line.parameters, step);
    if (error.empty() && first && batch != nullptr && !verb.method->secondPicture.empty() &&
        !line.given("with")) {
        error = verb.name + ": --with FILE is missing; it names the second picture, " +
                std::string(verb.method->secondPicture);
    }
    if (error.empty()) {
        error = takeSecond(verb, first, line, step.second);
    }
    if (error.empty() && !first && !line.words.empty()) {
        error = "'" + line.words.front() +
                "': pictures stand before the first ','; -o names the file to write";
    }
    chain.steps.push_back(std::move(step));
    return error;
}

}  // namespace

std::string readChain(const Verb& verb, const Words& words, Chain& chain,
                      const OptionGroup* batch) {
    const std::vector<Words> all = parts(words);
    std::string error = gluedComma(words);
    if (!error.empty()) {
        return error;
    }
    error = readPart(verb, all.front(), /*first=*/true, chain, chain.line, batch);
    for (std::size_t i = 1; i < all.size() && error.empty() && chain.help == nullptr; ++i) {
        const Verb* const next = verbOfPart(all[i], error);
        if (next == nullptr) {
            return error;
        }
        CommandLine line;
        const Words rest(std::next(all[i].begin()), all[i].end());
        error = readPart(*next, rest, /*first=*/false, chain, line, batch);
        if (error.empty()) {
            error = addOptions(line, chain.line);
        }
    }
    return error;
}

}  // namespace orv::cli
