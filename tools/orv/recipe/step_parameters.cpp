#include "recipe/step_parameters.h"

#include "methods/automatic.h"

namespace orv::cli {

const Parameter* stepParameter(const Method& method, std::string_view name) {
    for (const Parameter& parameter : method.parameters) {
        if (parameter.name == name) {
            return &parameter;
        }
    }
    if (!isAutomation(method, name)) {
        return nullptr;
    }
    return name == kAutoParameter.name ? &kAutoParameter : &kStrengthParameter;
}

std::vector<std::string_view> stepParameterNames(const Method& method) {
    std::vector<std::string_view> names;
    for (const Parameter& parameter : method.parameters) {
        names.push_back(parameter.name);
    }
    if (method.choose != nullptr) {
        names.insert(names.end(), {kStrengthParameter.name, kAutoParameter.name});
    }
    return names;
}

bool isAutomation(const Method& method, std::string_view name) {
    return method.choose != nullptr &&
           (name == kStrengthParameter.name || name == kAutoParameter.name);
}

}  // namespace orv::cli
