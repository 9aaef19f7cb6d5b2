#include <array>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "methods/method_catalogue.h"
#include "methods/suggestion.h"
#include "recipe/json_value.h"
#include "recipe/pixel_hash.h"
#include "recipe/recipe.h"

namespace orv::cli {

namespace {

using Kind = JsonValue::Kind;

constexpr std::string_view kStepExample = R"({"verb": "restore"})";

std::string joined(std::string_view place, std::string_view name) {
    std::string path(place);
    path += place.empty() ? "" : ".";
    return path + shownText(name);
}

std::string wrongKind(const std::string& place, const JsonValue& value,
                      std::string_view expected) {
    return place + ": is " + std::string(kindWords(value.kind)) + " (expected " +
           std::string(expected) + ")";
}

std::string listed(std::span<const std::string_view> names) {
    std::string text;
    for (const std::string_view name : names) {
        text += text.empty() ? "" : ", ";
        text += name;
    }
    return text;
}

/// What is wrong with the names of an object's members; empty when nothing is.
std::string unknownMember(const std::string& place, const JsonValue& object,
                          std::span<const std::string_view> names, std::string_view what) {
    for (const JsonValue& member : object.children) {
        bool known = false;
        for (const std::string_view name : names) {
            known = known || name == member.name;
        }
        if (!known) {
            return joined(place, member.name) + ": is no " + std::string(what) +
                   didYouMean(member.name, names) + " (there are " + listed(names) + ")";
        }
    }
    return {};
}

/// Reads a text that may be missing; `words` are one line, other texts may hold all but NUL.
std::string readText(const std::string& place, const JsonValue& object, std::string_view name,
                     bool words, std::string& text) {
    const JsonValue* const member = object.member(name);
    if (member == nullptr) {
        return {};
    }
    const std::string path = joined(place, name);
    if (member->kind != Kind::Text) {
        return wrongKind(path, *member, "a text");
    }
    for (const char c : member->text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == 0 || (words && (byte < 0x20 || byte == 0x7f))) {
            return path + ": holds a control character";
        }
    }
    text = member->text;
    return {};
}

std::string readCount(const std::string& place, const JsonValue& object, std::string_view name,
                      int& count) {
    const JsonValue* const member = object.member(name);
    if (member == nullptr) {
        return {};
    }
    const std::string path = joined(place, name);
    constexpr std::string_view kExpected = "a whole number from 1 on";
    if (member->kind != Kind::Number) {
        return wrongKind(path, *member, kExpected);
    }
    double number = 0.0;
    const Parameter any = integer(name, {}, 1, 1, std::numeric_limits<int>::max(), {});
    if (!parseValue(any, member->text, number).empty()) {
        return path + ": " + shownText(member->text) + " is out of range (expected " +
               std::string(kExpected) + ")";
    }
    count = static_cast<int>(number);
    return {};
}

std::string readHash(const std::string& place, const JsonValue& object, std::string& pixels) {
    std::string text;
    const std::string error = readText(place, object, "pixels", /*words=*/true, text);
    if (!error.empty() || object.member("pixels") == nullptr) {
        return error;
    }
    if (!isPixelHash(text)) {
        return place + ".pixels: '" + shownText(text) + "' is no hash (expected " +
               std::string(kPixelHashPrefix) + " and 32 digits from 0 to f)";
    }
    pixels = text;
    return {};
}

/// Takes the value of a parameter or an option as the text that a user would type.
std::string readScalar(const std::string& place, const JsonValue& value, std::string& text) {
    if (value.kind == Kind::Null) {
        return place + ": is null; leave the name out to get the default";
    }
    if (value.kind == Kind::Array || value.kind == Kind::Object) {
        return wrongKind(place, value, "a number, a text, true or false");
    }
    text = value.text;
    return {};
}

const Parameter* parameterOf(const Method& method, std::string_view name) {
    for (const Parameter& parameter : method.parameters) {
        if (parameter.name == name) {
            return &parameter;
        }
    }
    return nullptr;
}

std::string readParameter(const std::string& place, const Method& method,
                          const JsonValue& member, RecipeStep& step) {
    const std::string path = joined(place, member.name);
    const Parameter* const parameter = parameterOf(method, member.name);
    if (parameter == nullptr) {
        std::vector<std::string_view> names;
        for (const Parameter& candidate : method.parameters) {
            names.push_back(candidate.name);
        }
        return path + ": is no parameter of " + std::string(method.name) +
               didYouMean(member.name, names) + " (orv " + std::string(method.name) +
               " --help lists them)";
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
        if (parameterOf(method, member.name) != nullptr) {
            return joined(place, member.name) +
                   R"(: stands beside "verb"; write it within "parameters": {")" + member.name +
                   "\": ...}";
        }
    }
    return unknownMember(place, object, kFields, "field of a step");
}

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

std::string readSteps(const JsonValue& root, std::vector<RecipeStep>& steps) {
    const std::string example = "a list such as [" + std::string(kStepExample) + "]";
    const JsonValue* const list = root.member("steps");
    if (list == nullptr) {
        return "\"steps\" is missing (expected " + example + ")";
    }
    if (list->kind != Kind::Array) {
        return wrongKind("steps", *list, example);
    }
    if (list->children.empty()) {
        return "steps: is empty (expected " + example + ")";
    }
    for (const JsonValue& object : list->children) {
        const std::string place = "steps[" + std::to_string(steps.size()) + "]";
        const std::string error = readStep(place, object, steps.emplace_back());
        if (!error.empty()) {
            return error;
        }
    }
    return {};
}

std::string readOptions(const JsonValue& root, NamedTexts& options) {
    const JsonValue* const object = root.member("options");
    if (object == nullptr) {
        return {};
    }
    if (object->kind != Kind::Object) {
        return wrongKind("options", *object, "an object such as {\"quality\": 92}");
    }
    std::string error = unknownMember("options", *object, kRecipeOptions, "option of files");
    for (const JsonValue& member : object->children) {
        std::string text;
        if (error.empty()) {
            error = readScalar(joined("options", member.name), member, text);
        }
        options.emplace_back(member.name, text);
    }
    return error;
}

std::string readFacts(const JsonValue& root, const std::string& name,
                      std::optional<PictureFacts>& facts) {
    const JsonValue* const object = root.member(name);
    if (object == nullptr) {
        return {};
    }
    if (object->kind != Kind::Object) {
        return wrongKind(name, *object, "an object with what is known of the picture");
    }
    constexpr std::array<std::string_view, 6> kFields{"file",     "width", "height",
                                                      "channels", "bits",  "pixels"};
    PictureFacts found;
    std::string error = unknownMember(name, *object, kFields, "field of a picture");
    if (error.empty()) {
        error = readText(name, *object, "file", /*words=*/false, found.file);
    }
    for (const auto& [field, count] : {std::pair{"width", &found.width},
                                       {"height", &found.height},
                                       {"channels", &found.channels},
                                       {"bits", &found.bits}}) {
        if (error.empty()) {
            error = readCount(name, *object, field, *count);
        }
    }
    if (error.empty()) {
        error = readHash(name, *object, found.pixels);
    }
    facts = std::move(found);
    return error;
}

/// What is wrong with the marks that tell recipes from other files; empty when nothing is.
std::string wrongFormat(const JsonValue& root) {
    std::string format = "orv-recipe";
    std::string error = readText({}, root, "format", /*words=*/false, format);
    if (!error.empty()) {
        return error;
    }
    if (format != "orv-recipe") {
        return "format: '" + shownText(format) + "' is no recipe (expected \"orv-recipe\")";
    }
    int version = kRecipeVersion;
    error = readCount({}, root, "version", version);
    if (error.empty() && version > kRecipeVersion) {
        return "version: this recipe has version " + std::to_string(version) +
               " and this orv reads up to " + std::to_string(kRecipeVersion) +
               "; take the orv that wrote it or a newer one";
    }
    return error;
}

}  // namespace

std::string readRecipe(std::string_view text, Recipe& recipe) {
    if (text.size() > kLongestRecipe) {
        return "is longer than " + std::to_string(kLongestRecipe) +
               " bytes, so it is no recipe";
    }
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
        return "is empty (expected {\"steps\": [" + std::string(kStepExample) + "]})";
    }
    JsonValue root;
    std::string error = parseJson(text, root);
    if (!error.empty()) {
        return error;
    }
    if (root.kind != Kind::Object) {
        return "holds " + std::string(kindWords(root.kind)) + " (expected {\"steps\": [" +
               std::string(kStepExample) + "]})";
    }
    // A newer version may have fields that this one doesn't know.
    error = wrongFormat(root);
    constexpr std::array<std::string_view, 9> kFields{"format",  "version",     "program",
                                                      "name",    "description", "steps",
                                                      "options", "input",       "output"};
    Recipe found;
    if (error.empty()) {
        error = unknownMember({}, root, kFields, "field of a recipe");
    }
    for (const auto& [name, field] : {std::pair{"program", &found.program},
                                      {"name", &found.name},
                                      {"description", &found.description}}) {
        if (error.empty()) {
            error = readText({}, root, name, /*words=*/true, *field);
        }
    }
    if (error.empty()) {
        error = readSteps(root, found.steps);
    }
    if (error.empty()) {
        error = readOptions(root, found.options);
    }
    if (error.empty()) {
        error = readFacts(root, "input", found.input);
    }
    if (error.empty()) {
        error = readFacts(root, "output", found.output);
    }
    if (error.empty()) {
        recipe = std::move(found);
    }
    return error;
}

}  // namespace orv::cli
