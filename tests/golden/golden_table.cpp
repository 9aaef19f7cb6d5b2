#include "golden_table.h"

#include <cstdio>
#include <cstdlib>
#include <set>

#include "text_parts.h"

namespace golden {

const OutcomeField kOutcomeFields[5] = {{"size", &Outcome::size},
                                        {"pixels", &Outcome::pixels},
                                        {"stdout", &Outcome::out},
                                        {"stderr", &Outcome::err},
                                        {"progress", &Outcome::progress}};

namespace {

constexpr std::size_t kInputColumns = 5;
constexpr std::size_t kColumns = 11;
constexpr const char* kEqualToTheBit = "bits";

bool readFile(const char* path, std::string& text) {
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr) {
        return false;
    }
    char block[4096];
    for (std::size_t count = std::fread(block, 1, sizeof block, file); count > 0;
         count = std::fread(block, 1, sizeof block, file)) {
        text.append(block, count);
    }
    const bool whole = std::ferror(file) == 0;
    std::fclose(file);
    return whole;
}

bool readLine(const std::string& line, Case& one, std::string& error) {
    const std::vector<std::string> columns = parts(line, ',');
    if (columns.size() != kInputColumns && columns.size() != kColumns) {
        error = "has " + std::to_string(columns.size()) + " columns";
        return false;
    }
    one.name = columns[0];
    one.function = columns[1];
    one.arguments = columns[2];
    one.pictures = columns[3];
    one.calls = std::atoi(columns[4].c_str());
    if (one.name.empty() || one.calls < 1) {
        error = one.name.empty() ? "has no name" : "has no number of calls";
        return false;
    }
    for (std::size_t i = 0; i < std::size(kOutcomeFields); ++i) {
        one.expected.*kOutcomeFields[i].value =
            columns.size() == kColumns ? columns[kInputColumns + i] : "?";
    }
    if (columns.size() == kColumns && columns.back() != kEqualToTheBit) {
        error = "asks for \"" + columns.back() + "\"; hashes are equal or not";
        return false;
    }
    return true;
}

}  // namespace

std::string tableHeader() {
    std::string header = "name,export,arguments,pictures,calls";
    for (const OutcomeField& field : kOutcomeFields) {
        header += std::string(",") + field.title;
    }
    return header + ",equal";
}

std::string tableLine(const Case& one, const Outcome& outcome) {
    std::string line = one.name + "," + one.function + "," + one.arguments + "," +
                       one.pictures + "," + std::to_string(one.calls);
    for (const OutcomeField& field : kOutcomeFields) {
        line += "," + outcome.*field.value;
    }
    return line + "," + kEqualToTheBit;
}

bool readTable(const char* path, std::vector<Case>& cases, std::string& error) {
    std::string text;
    if (!readFile(path, text)) {
        error = std::string(path) + ": can't be read";
        return false;
    }
    std::set<std::string> names;
    int number = 0;
    for (std::string line : parts(text, '\n')) {
        ++number;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.empty() || (number == 1 && line == tableHeader())) {
            continue;
        }
        Case one;
        std::string problem = number == 1 ? "is not the header" : "";
        if (!problem.empty() || !readLine(line, one, problem)) {
            error = std::string(path) + ":" + std::to_string(number) + ": " + problem;
            return false;
        }
        if (!names.insert(one.name).second) {
            error = std::string(path) + ":" + std::to_string(number) + ": a second " + one.name;
            return false;
        }
        cases.push_back(one);
    }
    return true;
}

}  // namespace golden
