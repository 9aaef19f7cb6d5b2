#include "files/output_names.h"

#include <array>
#include <cstddef>
#include <map>

#include "files/image_file.h"
#include "files/path_names.h"
#include "methods/suggestion.h"
#include "system/file_system.h"

namespace orv::cli {

namespace {

constexpr std::array<std::string_view, 6> kFields{"stem", "ext", "name", "verb", "n", "folder"};

std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of('/') + 1);
}

std::string stemOf(const std::string& name) {
    return name.substr(0, name.size() - endingOfName(name).size());
}

/// The ending of a result: of the format that was asked for, or of the picture if orv writes it.
std::string resultEnding(const std::string& input, std::string_view wanted) {
    if (!wanted.empty()) {
        return std::string(wanted);
    }
    const FormatEntry* const format = formatOfName(input);
    if (format != nullptr && isCoded(*format)) {
        return endingOfName(input);
    }
    return haveLibrary() ? ".png" : ".bmp";
}

/// A name that tells where a file really is, as far as its folders exist; for comparison alone.
std::string placeOf(const std::string& path) {
    std::string resolved = resolvedPath(path);
    if (!resolved.empty()) {
        return foldedPath(resolved);
    }
    const std::string folder = folderOf(path);
    resolved = resolvedPath(folder.empty() ? "." : folder);
    return foldedPath(resolved.empty() ? path : resolved + "/" + fileNameOf(path));
}

/// Fills a pattern in for one picture.
class NamePattern {
  public:
    NamePattern(const OutputOrder& order, std::size_t count)
        : order_(order), digits_(std::to_string(count).size()) {}

    std::string apply(const InputFile& input, std::size_t number) const {
        std::string text;
        const std::string& pattern = order_.pattern;
        for (std::size_t at = 0; at < pattern.size();) {
            if (pattern[at] != '{') {
                text += pattern[at++];
                continue;
            }
            const std::size_t end = pattern.find('}', at);
            text += field(pattern.substr(at + 1, end - at - 1), input, number);
            at = end + 1;
        }
        const bool keepsFolders = pattern.find("{folder}") == std::string::npos;
        return (keepsFolders ? folderOf(input.relative) : std::string()) + text;
    }

  private:
    std::string field(std::string_view name, const InputFile& input, std::size_t number) const {
        const std::string file = input.path == "-" ? "picture" : fileNameOf(input.path);
        if (name == "stem") {
            return stemOf(file);
        }
        if (name == "ext") {
            return resultEnding(file, order_.ending);
        }
        if (name == "name") {
            return file;
        }
        if (name == "verb") {
            return order_.verb;
        }
        if (name == "n") {
            const std::string digits = std::to_string(number);
            return std::string(digits_ - digits.size(), '0') + digits;
        }
        return folderOf(input.relative);
    }

    const OutputOrder& order_;
    std::size_t digits_;
};

/// Why -o can't take so many pictures; empty when it can.
std::string outputRefusal(const std::vector<InputFile>& inputs, const OutputOrder& order) {
    const std::string& output = order.output;
    const std::string count = std::to_string(inputs.size());
    if (output == "-" && inputs.size() > 1) {
        return "-o -: standard output holds one picture, and " + count +
               " are to be written; name a folder";
    }
    if (output.empty() || output == "-") {
        return {};
    }
    if (isOutputFolder(inputs, order)) {
        return leadsSomewhere(output) && !isFolder(output)
                   ? output + ": is a file, and -o names the folder that results go into"
                   : std::string();
    }
    if (inputs.size() == 1 && order.pattern.empty()) {
        return {};
    }
    return output + ": names one file, and " +
           (inputs.size() > 1 ? count + " pictures are to be written" : "--name is given") +
           "; name a folder (" + output + "/ for one of this name)";
}

std::string resultPath(const InputFile& input, std::size_t number, const OutputOrder& order,
                       const NamePattern& pattern, bool folder) {
    if (order.output == "-" || (order.output.empty() && input.path == "-")) {
        return "-";
    }
    if (!order.output.empty() && !folder) {
        return order.output;
    }
    if (!order.output.empty()) {
        const std::string gap = order.output.back() == '/' ? "" : "/";
        return order.output + gap + pattern.apply(input, number);
    }
    if (order.pattern.empty()) {
        return outputBeside(input.path, order.suffix, order.ending);
    }
    // Beside the picture its folders are there already.
    return folderOf(input.path) + pattern.apply({input.path, fileNameOf(input.path)}, number);
}

}  // namespace

std::string patternFields() {
    return "{stem} {ext} {name} {verb} {n} {folder}";
}

std::string patternRefusal(const std::string& pattern) {
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (pattern[at] == '}') {
            return "--name: '" + pattern + "' has a '}' without its '{' (fields are " +
                   patternFields() + ")";
        }
        if (pattern[at] != '{') {
            continue;
        }
        const std::size_t end = pattern.find('}', at);
        if (end == std::string::npos) {
            return "--name: '" + pattern + "' has a '{' without its '}' (fields are " +
                   patternFields() + ")";
        }
        const std::string name = pattern.substr(at + 1, end - at - 1);
        bool known = false;
        for (const std::string_view field : kFields) {
            known = known || field == name;
        }
        if (!known) {
            return "--name: unknown field '{" + name + "}'" + didYouMean(name, kFields) +
                   " (fields are " + patternFields() + ")";
        }
        at = end;
    }
    for (std::size_t from = 0; from < pattern.size();) {
        const std::size_t end = std::min(pattern.find('/', from), pattern.size());
        const std::string part = pattern.substr(from, end - from);
        if (part == ".." || part == ".orv" || (part.empty() && from == 0)) {
            return "--name: '" + pattern +
                   "' leads out of the folder of the results, or into " +
                   "the one of the recipes; take names and folders below it";
        }
        from = end + 1;
    }
    if (!pattern.empty() && pattern.back() == '/') {
        return "--name: '" + pattern + "' ends with a folder; a file name is missing";
    }
    return {};
}

std::string outputBeside(const std::string& input, std::string_view suffix,
                         std::string_view ending) {
    return folderOf(input) + stemOf(fileNameOf(input)) + "." + std::string(suffix) +
           resultEnding(input, ending);
}

bool isOutputFolder(const std::vector<InputFile>& inputs, const OutputOrder& order) {
    if (order.output.empty() || order.output == "-") {
        return false;
    }
    if (order.intoFolder || order.output.back() == '/' || isFolder(order.output)) {
        return true;
    }
    const bool several =
        inputs.size() != 1 || order.severalNamed || inputs[0].found || !order.pattern.empty();
    return several && formatOfName(order.output) == nullptr;
}

std::string planOutputs(const std::vector<InputFile>& inputs, const OutputOrder& order,
                        std::vector<std::string>& outputs) {
    std::string error = patternRefusal(order.pattern);
    if (error.empty()) {
        error = outputRefusal(inputs, order);
    }
    if (!error.empty()) {
        return error;
    }
    OutputOrder used = order;
    if (used.pattern.empty()) {
        used.pattern = "{stem}{ext}";
    }
    const NamePattern pattern(used, inputs.size());
    const bool folder = isOutputFolder(inputs, order);
    std::map<std::string, const InputFile*> sources;
    for (const InputFile& input : inputs) {
        sources.emplace(placeOf(input.path), &input);
    }
    std::map<std::string, const InputFile*> taken;
    outputs.clear();
    for (const InputFile& input : inputs) {
        const std::string path = resultPath(input, outputs.size() + 1, order, pattern, folder);
        outputs.push_back(path);
        if (path == "-") {
            continue;
        }
        const std::string place = placeOf(path);
        const auto [other, isFirst] = taken.emplace(place, &input);
        if (!isFirst) {
            return other->second->path + " and " + input.path + " would both become " + path +
                   "; " +
                   (order.pattern.empty() && order.verb != "batch"
                        ? "restore them into different folders"
                        : "--name '{n}-{stem}{ext}' tells them apart");
        }
        const auto source = sources.find(place);
        if (source != sources.end() && source->second != &input) {
            return "the result of " + input.path + " would overwrite " + source->second->path +
                   ", a picture that is still to be read; write into another folder by -o";
        }
    }
    return {};
}

}  // namespace orv::cli
