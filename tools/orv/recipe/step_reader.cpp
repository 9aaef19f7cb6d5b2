#include "recipe/step_reader.h"

#include <array>
#include <string_view>
#include <vector>

#include "methods/method_catalogue.h"
#include "methods/suggestion.h"
#include "recipe/recipe_fields.h"
#include "recipe/step_parameters.h"

namespace orv::cli {

namespace {

using Kind = JsonValue::Kind;

std::string readParameter(const std::string& place, const Method& method,
                          const JsonValue& member, RecipeStep& step) {
    const std::string path = joined(place, member.name);
    const Parameter* const parameter = stepParameter(method, member.name);
    if (parameter == nullptr) {
        return path + ": is no parameter of " + std::string(method.name) +
               didYouMean(member.name, stepParameterNames(method)) + " (orv " +
               std::string(method.name) + " --help lists them)";
    }
    std::string text;
    std::string error = readScalar(path, member, text);
    if (!error.empty()) {
        return error;
    }
    double value = 0.0;
    error = parseValue(*parameter, text, value);
    if (!error.empty()) {
        return path + ": " +
               (text.size() > shownText(text).size()
                    ? "is too long (expected " + expectation(*parameter) + ")"
                    : error);
    }
    step.parameters.emplace_back(member.name, text);
    return {};
}

/// Reads the second picture: its file name, or an object with that and its hash.
std::string readSecond(const std::string& place, const Method& method, const JsonValue& object,
                       RecipeStep& step) {
    const JsonValue* const with = object.member("with");
    const std::string path = joined(place, "with");
    const std::string verb(method.name);
    if (method.secondPicture.empty()) {
        return with == nullptr ? std::string()
                               : path + ": " + verb + " takes no second picture";
    }
    const std::string needed = verb + " takes a second picture, " +
                               std::string(method.secondPicture) + ", as \"with\": \"FILE\"";
    if (with == nullptr) {
        return place + ": " + needed;
    }
    std::string error;
    if (with->kind == Kind::Text) {
        error = readText(place, object, "with", /*words=*/false, step.second);
    } else if (with->kind == Kind::Object) {
        constexpr std::array<std::string_view, 2> kFields{"file", "pixels"};
        error = unknownMember(path, *with, kFields, "field of a second picture");
        if (error.empty()) {
            error = readText(path, *with, "file", /*words=*/false, step.second);
        }
        if (error.empty()) {
            error = readHash(path, *with, step.secondPixels);
        }
    } else {
        return wrongKind(path, *with, "the file of a second picture");
    }
    return error.empty() && step.second.empty() ? path + ": names no file; " + needed : error;
}

/// What is wrong with the fields of a step; empty when nothing is.
std::string wrongStepField(const std::string& place, const Method& method,
                           const JsonValue& object) {
    constexpr std::array<std::string_view, 3> kFields{"verb", "parameters", "with"};
    for (const JsonValue& member : object.children) {
        if (stepParameter(method, member.name) != nullptr) {
            return joined(place, member.name) +
                   R"(: stands beside "verb"; write it within "parameters": {")" + member.name +
                   "\": ...}";
        }
    }
    return unknownMember(place, object, kFields, "field of a step");
}

}  // namespace

std::string readStep(const std::string& place, const JsonValue& object, RecipeStep& step) {
    if (object.kind != Kind::Object) {
        return wrongKind(place, object, "an object such as " + std::string(kStepExample));
    }
    std::string error = readText(place, object, "verb", /*words=*/true, step.verb);
    if (!error.empty()) {
        return error;
    }
    if (object.member("verb") == nullptr) {
        return place + ": has no \"verb\" (expected an object such as " +
               std::string(kStepExample) + ")";
    }
    const Method* const method = findMethod(step.verb);
    if (method == nullptr) {
        std::vector<std::string_view> names;
        for (const Method* const candidate : methodCatalogue()) {
            names.push_back(candidate->name);
        }
        return place + ".verb: '" + shownText(step.verb) + "' is no method" +
               didYouMean(step.verb, names) + " (orv methods lists them)";
    }
    error = wrongStepField(place, *method, object);
    if (error.empty()) {
        error = readSecond(place, *method, object, step);
    }
    const JsonValue* const parameters = object.member("parameters");
    if (!error.empty() || parameters == nullptr) {
        return error;
    }
    const std::string path = joined(place, "parameters");
    if (parameters->kind != Kind::Object) {
        return wrongKind(path, *parameters, "an object such as {\"tau\": 2}");
    }
    for (const JsonValue& member : parameters->children) {
        error = readParameter(path, *method, member, step);
        if (!error.empty()) {
            return error;
        }
    }
    return {};
}

}  // namespace orv::cli
