#include "methods/arguments.h"

#include <cstddef>

#include "methods/suggestion.h"

namespace orv {

Arguments::Arguments(std::span<const Parameter> parameters) : parameters_(parameters) {
    values_.reserve(parameters.size());
    for (const Parameter& parameter : parameters) {
        values_.push_back(parameter.defaultValue);
    }
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
    return error.empty() ? error : "--" + std::string(name) + ": " + error;
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
    return {};
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
