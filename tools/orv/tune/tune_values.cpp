#include "tune/tune_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace orv::cli {

namespace {

/// The values of a range without a step.
constexpr int kUsualValues = 4;
/// From this ratio on a range grows by a factor.
constexpr double kFactorFrom = 4.0;

std::string problem(const Parameter& parameter, const std::string& text) {
    return "--" + std::string(parameter.name) + ": " + text;
}

bool isNumber(const Parameter& parameter) {
    return parameter.kind == ParameterKind::Real || parameter.kind == ParameterKind::Integer;
}

/// The nearest number of three digits, or a whole one for a parameter that takes these.
double shortened(const Parameter& parameter, double value) {
    if (parameter.kind == ParameterKind::Integer) {
        return std::round(value);
    }
    if (value == 0.0) {
        return value;
    }
    const double unit = std::pow(10.0, std::floor(std::log10(std::abs(value))) - 2.0);
    return std::round(value / unit) * unit;
}

void add(std::vector<std::string>& values, const std::string& value) {
    if (std::find(values.begin(), values.end(), value) == values.end()) {
        values.push_back(value);
    }
}

std::string shortText(const Parameter& parameter, double value) {
    // The product with a power of ten isn't always the nearest number to three digits.
    double rounded = shortened(parameter, value);
    const double digits = std::round(rounded * 1e6) / 1e6;
    rounded = std::abs(digits - rounded) < 1e-9 * std::abs(rounded) ? digits : rounded;
    return numberText(rounded);
}

/// The values of a range, with its step or with 0 for the usual number of values.
std::string addRange(const Parameter& parameter, std::string_view text, double from, double to,
                     double step, std::vector<std::string>& values) {
    const bool byFactor = from > 0.0 && to >= kFactorFrom * from;
    const double count =
        step > 0.0 ? std::floor((to - from) / step * (1.0 + 1e-9)) + 1.0 : kUsualValues;
    if (count > static_cast<double>(kMostCells)) {
        return problem(parameter, "'" + std::string(text) + "' has more than " +
                                      std::to_string(kMostCells) + " values");
    }
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const double share = i / (kUsualValues - 1.0);
        if (step > 0.0) {
            add(values, numberText(std::round((from + i * step) * 1e9) / 1e9));
        } else if (i == 0 || i + 1 == kUsualValues) {
            add(values, numberText(i == 0 ? from : to));
        } else {
            add(values, shortText(parameter, byFactor ? from * std::pow(to / from, share)
                                                      : from + share * (to - from)));
        }
    }
    return {};
}

std::string readStep(const Parameter& parameter, std::string_view text, double& step) {
    const char* const end = text.data() + text.size();
    const auto [stop, failed] = std::from_chars(text.data(), end, step);
    const bool whole = parameter.kind == ParameterKind::Real || step == std::floor(step);
    if (failed != std::errc() || stop != end || !(step > 0.0) || !std::isfinite(step) ||
        !whole) {
        return problem(parameter,
                       "'" + std::string(text) + "' is no step (expected 1..8:2 or 1..8)");
    }
    return {};
}

std::string readRange(const Parameter& parameter, std::string_view text, std::size_t dots,
                      std::vector<std::string>& values) {
    std::string_view last = text.substr(dots + 2);
    double step = 0.0;
    const std::size_t colon = last.find(':');
    if (colon != std::string_view::npos) {
        std::string error = readStep(parameter, last.substr(colon + 1), step);
        if (!error.empty()) {
            return error;
        }
        last = last.substr(0, colon);
    }
    double from = 0.0;
    double to = 0.0;
    std::string error = parseValue(parameter, text.substr(0, dots), from);
    if (error.empty()) {
        error = parseValue(parameter, last, to);
    }
    if (!error.empty()) {
        return problem(parameter, error);
    }
    if (to < from) {
        return problem(parameter, "'" + std::string(text) + "' runs backwards; write " +
                                      std::string(last) + ".." +
                                      std::string(text.substr(0, dots)));
    }
    return addRange(parameter, text, from, to, step, values);
}

}  // namespace

std::string readValues(const Parameter& parameter, std::string_view text,
                       std::vector<std::string>& values) {
    values.clear();
    std::size_t at = 0;
    while (at <= text.size()) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        const std::string_view word = text.substr(at, end - at);
        const std::size_t dots = isNumber(parameter) ? word.find("..") : word.npos;
        std::string error;
        if (dots != std::string_view::npos) {
            error = readRange(parameter, word, dots, values);
        } else {
            double value = 0.0;
            error = parseValue(parameter, word, value);
            error = error.empty() ? error : problem(parameter, error);
            add(values, std::string(word));
        }
        if (!error.empty()) {
            return error;
        }
        at = end + 1;
    }
    return {};
}

}  // namespace orv::cli
