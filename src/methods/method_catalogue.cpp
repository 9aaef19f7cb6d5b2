#include "methods/method_catalogue.h"

#include <array>

#include "methods/blur_method.h"
#include "methods/colorize_method.h"
#include "methods/curvature_method.h"
#include "methods/deblur_method.h"
#include "methods/denoise_method.h"
#include "methods/homomorphic_method.h"
#include "methods/json_text.h"
#include "methods/recolor_method.h"
#include "methods/restore_method.h"
#include "methods/retinex_method.h"
#include "methods/shock_method.h"
#include "methods/susan_method.h"
#include "methods/wavelet_method.h"

namespace orv {

namespace {

// In the order of help and documents: noise, sharpness, light, colour.
constinit const std::array<const Method*, 12> kMethods{
    &kRestoreMethod,     &kDenoiseMethod, &kWaveletMethod, &kSusanMethod,
    &kCurvatureMethod,   &kBlurMethod,    &kDeblurMethod,  &kShockMethod,
    &kHomomorphicMethod, &kRetinexMethod, &kRecolorMethod, &kColorizeMethod};

std::string_view kindName(ParameterKind kind) {
    switch (kind) {
        case ParameterKind::Real:
            return "real";
        case ParameterKind::Integer:
            return "integer";
        case ParameterKind::Choice:
            return "choice";
        case ParameterKind::Flag:
            break;
    }
    return "flag";
}

void writeParameter(JsonText& json, const Parameter& parameter) {
    json.beginObject();
    json.member("name", parameter.name);
    json.member("kind", kindName(parameter.kind));
    if (!parameter.unit.empty()) {
        json.member("unit", parameter.unit);
    }
    switch (parameter.kind) {
        case ParameterKind::Flag:
            json.memberBool("default", parameter.defaultValue != 0.0);
            break;
        case ParameterKind::Choice:
            json.member("default", defaultText(parameter));
            json.beginArray("choices");
            for (const Choice& candidate : parameter.choices()) {
                json.beginObject();
                json.member("name", candidate.name);
                json.memberNumber("value", candidate.value);
                json.member("help", candidate.help);
                json.end();
            }
            json.end();
            break;
        case ParameterKind::Real:
        case ParameterKind::Integer:
            json.memberNumber("default", parameter.defaultValue);
            json.memberNumber("from", parameter.from);
            json.memberNumber("to", parameter.to);
            break;
    }
    json.member("help", parameter.help);
    if (!parameter.larger.empty()) {
        json.member("larger", parameter.larger);
    }
    json.memberBool("rare", parameter.rare);
    json.end();
}

}  // namespace

std::span<const Method* const> methodCatalogue() {
    return kMethods;
}

const Method* findMethod(std::string_view name) {
    for (const Method* const method : kMethods) {
        if (method->name == name) {
            return method;
        }
    }
    return nullptr;
}

std::string catalogueAsJson() {
    JsonText json;
    json.beginArray();
    for (const Method* const method : kMethods) {
        json.beginObject();
        json.member("name", method->name);
        json.member("summary", method->summary);
        json.beginArray("pictures");
        json.element(method->picture);
        if (!method->secondPicture.empty()) {
            json.element(method->secondPicture);
        }
        json.end();
        json.beginArray("parameters");
        for (const Parameter& parameter : method->parameters) {
            writeParameter(json, parameter);
        }
        json.end();
        json.beginArray("notes");
        for (const std::string_view line : method->notes) {
            json.element(line);
        }
        json.end();
        json.member("example", method->example);
        json.beginArray("literature");
        for (const std::string_view line : method->literature) {
            json.element(line);
        }
        json.end();
        json.end();
    }
    json.end();
    return json.take();
}

}  // namespace orv
