#include "tune/tune_request.h"

#include <utility>

#include "commands/chain.h"
#include "files/output_names.h"
#include "pipeline/job_options.h"
#include "terminal/shell_text.h"
#include "tune/tune_sheet.h"
#include "tune/tune_values.h"

namespace orv::cli {

namespace {

constexpr double kMostSheetPixels = 1e8;

/// Sorts the parameters into those with one value and those with several.
std::string readAxes(const CommandLine& line, TuneRequest& request) {
    TuneSheet& sheet = request.sheet;
    std::size_t cells = 1;
    for (const auto& [name, text] : line.parameters) {
        const Parameter& parameter = *request.method->parameter(name);
        std::vector<std::string> values{text};
        std::string error = parameter.kind == ParameterKind::Flag
                                ? std::string()
                                : readValues(parameter, text, values);
        if (!error.empty()) {
            return error;
        }
        if (values.size() == 1) {
            sheet.fixed.emplace_back(name, values.front());
            continue;
        }
        cells *= values.size();
        sheet.axes.push_back({name, std::move(values)});
    }
    if (sheet.axes.empty()) {
        return "tune: give one or two parameters several values, as --tau 1..8 or "
               "--contrast 5,10,20";
    }
    if (sheet.axes.size() > 2) {
        return "tune: varies two parameters at a time, not " +
               std::to_string(sheet.axes.size()) + "; give --" + sheet.axes[2].name +
               " one value";
    }
    if (cells > kMostCells) {
        return "tune: " + std::to_string(cells) + " results are more than the " +
               std::to_string(kMostCells) + " of a sheet; give fewer values";
    }
    return {};
}

/// Reads the words of a cell as its verb would, so that they mean and refuse the same.
std::string readCell(const TuneRequest& request, const std::string& second,
                     const std::vector<std::string>& values, TuneCell& cell) {
    Words words{request.sheet.input};
    if (!second.empty()) {
        words.push_back(second);
    }
    const auto add = [&](const std::string& name, const std::string& value) {
        words.push_back("--" + name);
        if (request.method->parameter(name)->kind != ParameterKind::Flag) {
            words.push_back(value);
        }
    };
    for (std::size_t i = 0; i < values.size(); ++i) {
        add(request.sheet.axes[i].name, values[i]);
    }
    for (const auto& [name, value] : request.sheet.fixed) {
        add(name, value);
    }
    Chain chain;
    std::string error = readChain(*request.method, words, chain);
    if (error.empty()) {
        cell.values = values;
        cell.command = commandText(request.method->name, words);
        cell.step = std::move(chain.steps.front());
    }
    return error;
}

std::string readCells(const std::string& second, TuneRequest& request) {
    TuneSheet& sheet = request.sheet;
    const std::vector<std::string> none{""};
    for (const std::string& down : sheet.axes.size() == 2 ? sheet.axes[1].values : none) {
        for (const std::string& across : sheet.axes[0].values) {
            std::vector<std::string> values{across};
            if (sheet.axes.size() == 2) {
                values.push_back(down);
            }
            TuneCell cell{{}, {}, {nullptr, Arguments({}), {}}, {}, {}};
            std::string error = readCell(request, second, values, cell);
            if (!error.empty()) {
                return error;
            }
            sheet.cells.push_back(std::move(cell));
        }
    }
    return {};
}

std::string readPlace(const CommandLine& line, TuneRequest& request) {
    std::string error;
    if (line.given("crop")) {
        error = readCrop(line.text("crop"), request.crop);
    }
    if (error.empty() && line.given("at")) {
        error = readAt(line.text("at"), request.crop);
    }
    if (error.empty() && sheetPixels(request.sheet, request.crop.width, request.crop.height) >
                             kMostSheetPixels) {
        error =
            "--crop: the sheet would have more than 100 megapixels; take a smaller part or "
            "fewer values";
    }
    return error;
}

}  // namespace

std::string readTuneRequest(const Verb& verb, const CommandLine& line, TuneRequest& request) {
    Words words = line.words;
    if (words.empty()) {
        return missingWord(verb, "the picture to read");
    }
    request.sheet.verb = request.method->name;
    request.sheet.input = words.front();
    words.erase(words.begin());
    std::string second = line.text("with");
    if (!request.method->method->secondPicture.empty() && second.empty() && !words.empty()) {
        second = words.front();
        words.erase(words.begin());
    }
    if (!words.empty()) {
        return wordTooMany(verb, words.front());
    }
    std::string error = readJobOptions(line, request.common);
    if (error.empty()) {
        error = readAxes(line, request);
    }
    if (error.empty()) {
        error = readCells(second, request);
    }
    if (error.empty()) {
        error = readPlace(line, request);
    }
    request.json = line.given("json");
    request.output = line.text("output");
    if (request.output.empty()) {
        request.output =
            outputBeside(request.sheet.input, "tune", haveLibrary() ? ".png" : ".bmp");
    }
    return error;
}

}  // namespace orv::cli
