#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "recipe/json_value.h"
#include "recipe/recipe.h"
#include "recipe/recipe_fields.h"
#include "recipe/step_reader.h"

namespace orv::cli {

namespace {

using Kind = JsonValue::Kind;

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

/// Reads the size of a file that may be missing.
std::string readBytes(const std::string& place, const JsonValue& object, double& bytes) {
    const JsonValue* const member = object.member("bytes");
    if (member == nullptr) {
        return {};
    }
    char* end = nullptr;
    const double number =
        member->kind == Kind::Number ? std::strtod(member->text.c_str(), &end) : -1.0;
    if (number < 0.0 || end != member->text.c_str() + member->text.size()) {
        return joined(place, "bytes") + ": is no size of a file (expected a whole number)";
    }
    bytes = number;
    return {};
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
    constexpr std::array<std::string_view, 8> kFields{"file", "width",  "height", "channels",
                                                      "bits", "pixels", "bytes",  "modified"};
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
    if (error.empty()) {
        error = readText(name, *object, "modified", /*words=*/true, found.modified);
    }
    if (error.empty()) {
        error = readBytes(name, *object, found.bytes);
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
    constexpr std::array<std::string_view, 10> kFields{
        "format",  "version", "program", "name",  "description",
        "request", "steps",   "options", "input", "output"};
    Recipe found;
    if (error.empty()) {
        error = unknownMember({}, root, kFields, "field of a recipe");
    }
    for (const auto& [name, field] : {std::pair{"program", &found.program},
                                      {"name", &found.name},
                                      {"description", &found.description},
                                      {"request", &found.request}}) {
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
