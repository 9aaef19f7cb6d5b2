#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orv {

/// What values a parameter takes.
enum class ParameterKind { Real, Integer, Choice, Flag };

/// One value of a parameter that is chosen by name.
struct Choice {
    std::string_view name;
    int value;  ///< the engine's number for it
    std::string_view help;
};

/// One parameter of a method, told once for parsing, help, manual and bindings.
///
/// Units:   `unit` names them; the text in capitals stands for the value in help and messages.
struct Parameter {
    std::string_view name;
    std::string_view unit;  ///< "pixels", "grey levels", ...; empty for choices and flags
    ParameterKind kind;
    double defaultValue;  ///< the engine's number for a choice, 0 or 1 for a flag
    double from;          ///< the range of a number, both ends included
    double to;
    std::span<const Choice> (*choices)();  ///< null but for a choice
    bool choicesByNumber;   ///< a choice may also be given as the engine's number
    std::string_view help;  ///< one line
    /// What a larger number does, after "larger": "smooths more"; empty for choices and flags.
    std::string_view larger = {};
    bool rare = false;  ///< most users never need it; short helps name it alone
};

/// A real parameter.
constexpr Parameter real(std::string_view name, std::string_view unit, double defaultValue,
                         double from, double to, std::string_view help,
                         std::string_view larger = {}) {
    return {name, unit,  ParameterKind::Real, defaultValue, from, to, nullptr, false,
            help, larger};
}

/// An integer parameter.
constexpr Parameter integer(std::string_view name, std::string_view unit, int defaultValue,
                            int from, int to, std::string_view help,
                            std::string_view larger = {}) {
    return {name,
            unit,
            ParameterKind::Integer,
            static_cast<double>(defaultValue),
            static_cast<double>(from),
            static_cast<double>(to),
            nullptr,
            false,
            help,
            larger};
}

/// A parameter that is chosen by name.
constexpr Parameter choice(std::string_view name, int defaultValue,
                           std::span<const Choice> (*choices)(), std::string_view help) {
    return {
        name,  "",  ParameterKind::Choice, static_cast<double>(defaultValue), 0.0, 0.0, choices,
        false, help};
}

/// A parameter that is chosen by name or by the engine's number.
constexpr Parameter numberedChoice(std::string_view name, int defaultValue,
                                   std::span<const Choice> (*choices)(),
                                   std::string_view help) {
    return {
        name, "",  ParameterKind::Choice, static_cast<double>(defaultValue), 0.0, 0.0, choices,
        true, help};
}

/// A parameter that is on or off.
constexpr Parameter flag(std::string_view name, bool defaultValue, std::string_view help) {
    return {name,  "",  ParameterKind::Flag, defaultValue ? 1.0 : 0.0, 0.0, 1.0, nullptr,
            false, help};
}

/// A parameter that most users never need.
constexpr Parameter rare(Parameter parameter) {
    parameter.rare = true;
    return parameter;
}

/// What stands for the value in help and messages: "PIXELS", "GREY-LEVELS", "NAME", "N"; empty
/// for a flag.
std::string placeholder(const Parameter& parameter);

/// The default as a user would write it: "2.0", "5", "AOS", "off".
std::string defaultText(const Parameter& parameter);

/// What the parameter takes: "PIXELS from 0.5 to 256, default 2.0".
std::string expectation(const Parameter& parameter);

/// Reads a value as a user writes it and checks it.
///
/// Shapes:  `value` is written on success alone.
/// Fails:   with a text such as "'wide' is not a number (expected PIXELS from 0.5 to 256,
///          default 2.0)"; an empty text means success.
std::string parseValue(const Parameter& parameter, std::string_view text, double& value);

/// Checks a value that comes as a number; the texts are those of parseValue.
std::string checkValue(const Parameter& parameter, double value);

/// A number in its shortest decimal form, "0.5", "256", "1e+09".
std::string numberText(double value);

}  // namespace orv
