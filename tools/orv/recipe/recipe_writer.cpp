#include <string>
#include <string_view>

#include "methods/json_text.h"
#include "methods/method_catalogue.h"
#include "recipe/recipe.h"
#include "recipe/step_parameters.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

namespace {

void writeText(JsonText& json, std::string_view name, std::string_view text) {
    if (!text.empty()) {
        json.member(name, cleanUtf8(text));
    }
}

void writeCount(JsonText& json, std::string_view name, int count) {
    if (count > 0) {
        json.memberDigits(name, std::to_string(count));
    }
}

/// Writes a parameter as what it is: a number, a name, true or false.
void writeParameter(JsonText& json, const Parameter* parameter, const std::string& name,
                    const std::string& text) {
    double value = 0.0;
    if (parameter == nullptr || !parseValue(*parameter, text, value).empty()) {
        json.member(name, cleanUtf8(text));
        return;
    }
    switch (parameter->kind) {
        case ParameterKind::Flag:
            json.memberBool(name, value != 0.0);
            return;
        case ParameterKind::Choice:
            json.member(name, valueText(*parameter, value));
            return;
        case ParameterKind::Integer:
        case ParameterKind::Real:
            json.memberNumber(name, value);
    }
}

void writeStep(JsonText& json, const RecipeStep& step) {
    const Method* const method = findMethod(step.verb);
    json.beginObject();
    json.member("verb", cleanUtf8(step.verb));
    if (!step.second.empty()) {
        json.beginObject("with");
        writeText(json, "file", step.second);
        writeText(json, "pixels", step.secondPixels);
        json.end();
    }
    if (!step.parameters.empty()) {
        json.beginObject("parameters");
        for (const auto& [name, text] : step.parameters) {
            writeParameter(json, method == nullptr ? nullptr : stepParameter(*method, name),
                           name, text);
        }
        json.end();
    }
    json.end();
}

/// Writes an option of files: whole numbers as numbers.
void writeOption(JsonText& json, const std::string& name, const std::string& text) {
    const bool number = !text.empty() && text.size() <= 9 && (text == "0" || text[0] != '0') &&
                        text.find_first_not_of("0123456789") == std::string::npos;
    if (number) {
        json.memberDigits(name, text);
    } else {
        json.member(name, cleanUtf8(text));
    }
}

void writeFacts(JsonText& json, std::string_view name,
                const std::optional<PictureFacts>& facts) {
    if (!facts) {
        return;
    }
    json.beginObject(name);
    writeText(json, "file", facts->file);
    writeCount(json, "width", facts->width);
    writeCount(json, "height", facts->height);
    writeCount(json, "channels", facts->channels);
    writeCount(json, "bits", facts->bits);
    writeText(json, "pixels", facts->pixels);
    if (facts->bytes > 0.0) {
        json.memberNumber("bytes", facts->bytes);
    }
    writeText(json, "modified", facts->modified);
    json.end();
}

}  // namespace

std::string writeRecipe(const Recipe& recipe) {
    JsonText json;
    json.beginObject();
    json.member("format", "orv-recipe");
    json.memberNumber("version", kRecipeVersion);
    writeText(json, "program", recipe.program);
    writeText(json, "name", recipe.name);
    writeText(json, "description", recipe.description);
    writeText(json, "request", recipe.request);
    json.beginArray("steps");
    for (const RecipeStep& step : recipe.steps) {
        writeStep(json, step);
    }
    json.end();
    if (!recipe.options.empty()) {
        json.beginObject("options");
        for (const auto& [name, text] : recipe.options) {
            writeOption(json, name, text);
        }
        json.end();
    }
    writeFacts(json, "input", recipe.input);
    writeFacts(json, "output", recipe.output);
    json.end();
    return json.take();
}

}  // namespace orv::cli
