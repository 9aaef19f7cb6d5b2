#include "methods/arguments.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "methods/suggestion.h"

namespace orv {

namespace {

/// The nearest number of three decimal digits, as its text is read.
double threeDigits(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", value);
    return std::strtod(text, nullptr);
}

}  // namespace

Arguments::Arguments(std::span<const Parameter> parameters) : parameters_(parameters) {
    values_.reserve(parameters.size());
    for (const Parameter& parameter : parameters) {
        values_.push_back(parameter.defaultValue);
    }
    origins_.resize(parameters.size(), Origin::Default);
}

int Arguments::indexOf(std::string_view name) const {
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
        if (parameters_[i].name == name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::string Arguments::unknownName(std::string_view name) const {
    std::vector<std::string_view> names;
    for (const Parameter& parameter : parameters_) {
        names.push_back(parameter.name);
    }
    return "'" + std::string(name) + "' is no parameter of this method" +
           didYouMean(name, names);
}

std::string Arguments::set(std::string_view name, std::string_view text) {
    const int index = indexOf(name);
    if (index < 0) {
        return unknownName(name);
    }
    const auto i = static_cast<std::size_t>(index);
    const std::string error = parseValue(parameters_[i], text, values_[i]);
    if (!error.empty()) {
        return "--" + std::string(name) + ": " + error;
    }
    origins_[i] = Origin::Given;
    return {};
}

std::string Arguments::setNumber(std::string_view name, double value) {
    const int index = indexOf(name);
    if (index < 0) {
        return unknownName(name);
    }
    const auto i = static_cast<std::size_t>(index);
    const std::string error = checkValue(parameters_[i], value);
    if (!error.empty()) {
        return "--" + std::string(name) + ": " + error;
    }
    values_[i] = value;
    origins_[i] = Origin::Given;
    return {};
}

void Arguments::choose(std::string_view name, double value) {
    const int index = indexOf(name);
    if (index < 0 || isGiven(name)) {
        return;
    }
    const auto i = static_cast<std::size_t>(index);
    const Parameter& parameter = parameters_[i];
    if (parameter.kind == ParameterKind::Real || parameter.kind == ParameterKind::Integer) {
        value = std::clamp(value, parameter.from, parameter.to);
    }
    if (parameter.kind == ParameterKind::Real) {
        value = threeDigits(value);
    }
    if (checkValue(parameter, value).empty()) {
        values_[i] = value;
        origins_[i] = Origin::Chosen;
    }
}

bool Arguments::isGiven(std::string_view name) const {
    const int index = indexOf(name);
    return index >= 0 && origins_[static_cast<std::size_t>(index)] == Origin::Given;
}

bool Arguments::allGiven() const {
    return std::all_of(origins_.begin(), origins_.end(),
                       [](Origin origin) { return origin == Origin::Given; });
}

std::string Arguments::commandText() const {
    std::string text;
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
        const Parameter& parameter = parameters_[i];
        const bool flag = parameter.kind == ParameterKind::Flag;
        if (origins_[i] == Origin::Default || (flag && values_[i] == 0.0)) {
            continue;
        }
        text += " --" + std::string(parameter.name);
        if (parameter.kind == ParameterKind::Choice) {
            text += " " + std::string(choiceName(parameter.name));
        } else if (!flag) {
            text += " " + numberText(values_[i]);
        }
    }
    return text;
}

double Arguments::real(std::string_view name) const {
    const int index = indexOf(name);
    return index < 0 ? 0.0 : values_[static_cast<std::size_t>(index)];
}

int Arguments::integer(std::string_view name) const {
    return static_cast<int>(real(name));
}

bool Arguments::flag(std::string_view name) const {
    return real(name) != 0.0;
}

std::string_view Arguments::choiceName(std::string_view name) const {
    const int index = indexOf(name);
    if (index < 0) {
        return {};
    }
    const Parameter& parameter = parameters_[static_cast<std::size_t>(index)];
    if (parameter.kind == ParameterKind::Choice) {
        for (const Choice& candidate : parameter.choices()) {
            if (candidate.value == integer(name)) {
                return candidate.name;
            }
        }
    }
    return {};
}

}  // namespace orv
