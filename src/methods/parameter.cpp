#include "methods/parameter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "methods/suggestion.h"

namespace orv {

namespace {

/// Choices beyond this many are not listed in a message.
constexpr std::size_t kListedChoices = 10;

/// Whether the whole text is one decimal number.
bool readNumber(std::string_view text, double& value) {
#if defined(__cpp_lib_to_chars)
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc::result_out_of_range) {
        // The value was left as it is; this gives infinity, or 0 for what is too small.
        value = std::strtod(std::string(text).c_str(), nullptr);
    }
    return stop == end && (error == std::errc() || error == std::errc::result_out_of_range);
#else
    const std::string copy(text);
    char* stop = nullptr;
    value = std::strtod(copy.c_str(), &stop);
    return !copy.empty() && copy.front() != ' ' && stop == copy.c_str() + copy.size();
#endif
}

const Choice* choiceOfValue(const Parameter& parameter, double value) {
    for (const Choice& candidate : parameter.choices()) {
        if (candidate.value == value) {
            return &candidate;
        }
    }
    return nullptr;
}

const Choice* choiceOfName(const Parameter& parameter, std::string_view text) {
    for (const Choice& candidate : parameter.choices()) {
        if (sameWord(candidate.name, text)) {
            return &candidate;
        }
    }
    return nullptr;
}

std::string choiceNames(const Parameter& parameter) {
    std::string names;
    for (const Choice& candidate : parameter.choices()) {
        names += names.empty() ? "" : ", ";
        names += candidate.name;
    }
    return names;
}

std::string outOfRange(const Parameter& parameter, std::string_view text) {
    return std::string(text) + " is out of range (expected " + expectation(parameter) + ")";
}

std::string unknownChoice(const Parameter& parameter, std::string_view text) {
    double number = 0.0;
    if (parameter.choicesByNumber && readNumber(text, number)) {
        return outOfRange(parameter, text);
    }
    std::vector<std::string_view> names;
    for (const Choice& candidate : parameter.choices()) {
        names.push_back(candidate.name);
    }
    std::string message = "'" + std::string(text) + "' is not known";
    message += didYouMean(text, names);
    return message + " (expected " + expectation(parameter) + ")";
}

std::string parseChoice(const Parameter& parameter, std::string_view text, double& value) {
    const Choice* found = choiceOfName(parameter, text);
    double number = 0.0;
    if (found == nullptr && parameter.choicesByNumber && readNumber(text, number)) {
        found = choiceOfValue(parameter, number);
    }
    if (found == nullptr) {
        return unknownChoice(parameter, text);
    }
    value = found->value;
    return {};
}

std::string parseFlag(const Parameter& parameter, std::string_view text, double& value) {
    for (const std::string_view on : {"on", "true", "yes", "1"}) {
        if (sameWord(text, on)) {
            value = 1.0;
            return {};
        }
    }
    for (const std::string_view off : {"off", "false", "no", "0"}) {
        if (sameWord(text, off)) {
            value = 0.0;
            return {};
        }
    }
    return "'" + std::string(text) + "' is neither on nor off (expected " +
           expectation(parameter) + ")";
}

}  // namespace

std::string numberText(double value) {
    std::array<char, 32> text{};
    for (int digits = 6; digits <= 17; ++digits) {
        std::snprintf(text.data(), text.size(), "%.*g", digits, value);
        if (std::strtod(text.data(), nullptr) == value) {
            break;
        }
    }
    return text.data();
}

std::string placeholder(const Parameter& parameter) {
    if (parameter.kind == ParameterKind::Flag) {
        return {};
    }
    if (parameter.kind == ParameterKind::Choice) {
        return "NAME";
    }
    std::string text(parameter.unit.empty() ? std::string_view("n") : parameter.unit);
    for (char& c : text) {
        if (c == ' ') {
            c = '-';
        } else if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return text;
}

std::string defaultText(const Parameter& parameter) {
    switch (parameter.kind) {
        case ParameterKind::Flag:
            return parameter.defaultValue != 0.0 ? "on" : "off";
        case ParameterKind::Choice: {
            const Choice* const found = choiceOfValue(parameter, parameter.defaultValue);
            return found == nullptr ? std::string() : std::string(found->name);
        }
        case ParameterKind::Integer:
            return numberText(parameter.defaultValue);
        case ParameterKind::Real:
            break;
    }
    std::string text = numberText(parameter.defaultValue);
    if (text.find_first_of(".e") == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string expectation(const Parameter& parameter) {
    const std::string last = ", default " + defaultText(parameter);
    switch (parameter.kind) {
        case ParameterKind::Flag:
            return "flag" + last;
        case ParameterKind::Choice: {
            const std::span<const Choice> choices = parameter.choices();
            if (choices.size() <= kListedChoices) {
                return choiceNames(parameter) + last;
            }
            std::string text = "one of " + std::to_string(choices.size()) + " names, '";
            text.append(choices.front().name).append("' to '").append(choices.back().name);
            text += "'";
            if (parameter.choicesByNumber) {
                text += ", or a number from " + std::to_string(choices.front().value) + " to " +
                        std::to_string(choices.back().value);
            }
            return text + last;
        }
        case ParameterKind::Integer:
        case ParameterKind::Real:
            break;
    }
    return placeholder(parameter) + " from " + numberText(parameter.from) + " to " +
           numberText(parameter.to) + last;
}

std::string checkValue(const Parameter& parameter, double value) {
    if (parameter.kind == ParameterKind::Choice) {
        return choiceOfValue(parameter, value) != nullptr
                   ? std::string()
                   : unknownChoice(parameter, numberText(value));
    }
    if (!std::isfinite(value)) {
        return "'" + numberText(value) + "' is not a finite number (expected " +
               expectation(parameter) + ")";
    }
    if (parameter.kind != ParameterKind::Real && value != std::trunc(value)) {
        return "'" + numberText(value) + "' is not a whole number (expected " +
               expectation(parameter) + ")";
    }
    if (value < parameter.from || value > parameter.to) {
        return outOfRange(parameter, numberText(value));
    }
    return {};
}

std::string parseValue(const Parameter& parameter, std::string_view text, double& value) {
    if (parameter.kind == ParameterKind::Choice) {
        return parseChoice(parameter, text, value);
    }
    if (parameter.kind == ParameterKind::Flag) {
        return parseFlag(parameter, text, value);
    }

    const std::string shown(text);
    double number = 0.0;
    if (!readNumber(text, number)) {
        return "'" + shown + "' is not a number (expected " + expectation(parameter) + ")";
    }
    if (!std::isfinite(number)) {
        return "'" + shown + "' is not a finite number (expected " + expectation(parameter) +
               ")";
    }
    if (parameter.kind == ParameterKind::Integer && number != std::trunc(number)) {
        return "'" + shown + "' is not a whole number (expected " + expectation(parameter) +
               ")";
    }
    if (number < parameter.from || number > parameter.to) {
        return outOfRange(parameter, text);
    }
    value = number;
    return {};
}

}  // namespace orv
