#pragma once

#include <span>
#include <string>
#include <string_view>

#include "recipe/json_value.h"

namespace orv::cli {

/// A step with no more than its verb, for messages.
inline constexpr std::string_view kStepExample = R"({"verb": "restore"})";

/// The place of a member, "steps[0].verb".
std::string joined(std::string_view place, std::string_view name);

/// "place: is a text (expected ...)".
std::string wrongKind(const std::string& place, const JsonValue& value,
                      std::string_view expected);

/// What is wrong with the names of an object's members, as one line; empty when nothing is.
///
/// `what` tells what the names are: "field of a step".
std::string unknownMember(const std::string& place, const JsonValue& object,
                          std::span<const std::string_view> names, std::string_view what);

/// Reads a text that may be missing; `words` are one line, other texts may hold all but NUL.
std::string readText(const std::string& place, const JsonValue& object, std::string_view name,
                     bool words, std::string& text);

/// Reads a whole number from 1 on that may be missing.
std::string readCount(const std::string& place, const JsonValue& object, std::string_view name,
                      int& count);

/// Reads the member "pixels", the pixelHash() of a picture, that may be missing.
std::string readHash(const std::string& place, const JsonValue& object, std::string& pixels);

/// Takes the value of a parameter or an option as the text that a user would type.
std::string readScalar(const std::string& place, const JsonValue& value, std::string& text);

}  // namespace orv::cli
