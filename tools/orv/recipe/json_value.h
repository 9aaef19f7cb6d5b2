#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// A value of a JSON text, with what it holds.
struct JsonValue {
    enum class Kind { Null, Bool, Number, Text, Array, Object };

    Kind kind = Kind::Null;
    std::string name;  ///< of a member of an object
    std::string text;  ///< of a text; a number as it was written; "true", "false"
    std::vector<JsonValue> children;

    /// The member of a name, or null.
    const JsonValue* member(std::string_view memberName) const;
};

/// What a value is, in words: "a text", "an array".
std::string_view kindWords(JsonValue::Kind kind);

/// A text of the user within a message, cut after 60 bytes.
std::string shownText(std::string_view text);

/// Reads a JSON text.
///
/// Nothing nests deeper than 16 levels, no array or object holds more than 1000 values, and no
/// name stands twice in an object: other programs would each take another one of the two.
///
/// Shapes:  `value` is written on success alone.
/// Fails:   with one line that begins with "line 3, column 7: ", or with the place in the
///          value, "steps[0].verb: "; an empty text means success.
std::string parseJson(std::string_view text, JsonValue& value);

}  // namespace orv::cli
