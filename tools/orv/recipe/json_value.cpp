#include "recipe/json_value.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

namespace orv::cli {

namespace {

constexpr std::size_t kDeepest = 16;
constexpr std::size_t kMostChildren = 1000;
constexpr std::size_t kLongestShown = 60;

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// "line 3, column 7" of the byte at `offset`, columns being bytes.
std::string placeOf(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const std::size_t lineBreak = before.find_last_of('\n');
    const std::size_t column =
        lineBreak == std::string_view::npos ? before.size() : before.size() - lineBreak - 1;
    return "line " + std::to_string(std::count(before.begin(), before.end(), '\n') + 1) +
           ", column " + std::to_string(column + 1);
}

/// Why the byte at `offset` was refused, in the words of somebody who types recipes.
///
/// `words` is the parser's own message, whose phrases tell the cases apart.
std::string reasonOf(std::string_view text, std::size_t offset, std::string_view words) {
    if (contains(words, "number overflow")) {
        return "the number is too large";
    }
    if (contains(words, "ill-formed UTF-8")) {
        return "the text is no UTF-8";
    }
    if (offset >= text.size()) {
        return contains(words, "missing closing quote")
                   ? "the file ends within a text; its closing quote is missing"
                   : "the file ends too early; a closing bracket or more is missing";
    }
    if (contains(words, "expected end of input")) {
        return "something stands after the end of the recipe";
    }
    if (contains(words, "invalid string")) {
        return contains(words, "control character")
                   ? "a text may not hold a line break or control character; write \\n for it"
                   : "the text holds an escape that JSON doesn't know";
    }
    const char refused = text[offset];
    const std::size_t last = text.substr(0, offset).find_last_not_of(" \t\r\n");
    const char before = last == std::string_view::npos ? '\0' : text[last];
    if ((refused == '}' || refused == ']') && before == ',') {
        return "nothing follows the comma before this bracket";
    }
    if (refused == '\'') {
        return "names and texts stand between double quotes";
    }
    if (refused == '/' || refused == '#') {
        return "JSON has no comments; \"description\" takes a line of words";
    }
    if (contains(words, "parsing object key")) {
        return "a name between double quotes is expected here";
    }
    if (contains(words, "parsing object separator")) {
        return "a colon is expected between a name and its value";
    }
    if (contains(words, "parsing object -") || contains(words, "parsing array -")) {
        return "a comma or a closing bracket is missing before this";
    }
    return "this is no value (texts stand between double quotes)";
}

/// Builds the value while the parser reads; it may stop the parser with an error of its own.
class Builder final : public nlohmann::json_sax<nlohmann::json> {
  public:
    explicit Builder(std::string_view text) : text_(text) {}

    bool null() override { return add(JsonValue::Kind::Null, {}); }
    bool boolean(bool value) override {
        return add(JsonValue::Kind::Bool, value ? "true" : "false");
    }
    bool number_integer(number_integer_t value) override {
        return add(JsonValue::Kind::Number, std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return add(JsonValue::Kind::Number, std::to_string(value));
    }
    bool number_float(number_float_t /*value*/, const string_t& digits) override {
        std::string number = digits;
        // The parser puts the decimal point of the locale there.
        std::replace(number.begin(), number.end(), ',', '.');
        return add(JsonValue::Kind::Number, std::move(number));
    }
    bool string(string_t& value) override {
        return add(JsonValue::Kind::Text, std::move(value));
    }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return open(JsonValue::Kind::Object); }
    bool start_array(std::size_t /*size*/) override { return open(JsonValue::Kind::Array); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        const JsonValue& object = *open_.back();
        if (object.member(name) != nullptr) {
            name_ = name;
            return stop("stands there twice");
        }
        name_ = std::move(name);
        return true;
    }
    bool parse_error(std::size_t position, const std::string& /*lastToken*/,
                     const nlohmann::json::exception& exception) override {
        const std::size_t offset = position == 0 ? 0 : position - 1;
        const std::string_view words = exception.what();
        // At the end of the text the parser's position is one byte behind it, or two.
        const bool atEnd = contains(words, "unexpected end of input") ||
                           contains(words, "missing closing quote");
        const std::size_t place = atEnd ? text_.size() : offset;
        error_ = placeOf(text_, place) + ": " + reasonOf(text_, place, words);
        return false;
    }

    const std::string& error() const { return error_; }
    JsonValue take() { return std::move(root_); }

  private:
    bool add(JsonValue::Kind kind, std::string text) {
        if (open_.empty()) {
            root_.kind = kind;
            root_.text = std::move(text);
            return true;
        }
        std::vector<JsonValue>& children = open_.back()->children;
        if (children.size() == kMostChildren) {
            return stop("one value too many; " + std::to_string(kMostChildren) +
                        " is the most");
        }
        children.push_back({kind, std::move(name_), std::move(text), {}});
        name_.clear();
        return true;
    }

    bool open(JsonValue::Kind kind) {
        if (open_.size() == kDeepest) {
            return stop("nests deeper than " + std::to_string(kDeepest) + " levels");
        }
        const bool atTop = open_.empty();
        if (!add(kind, {})) {
            return false;
        }
        open_.push_back(atTop ? &root_ : &open_.back()->children.back());
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }

    /// The place of the value that comes next, "steps[2].verb".
    std::string path() const {
        std::string path;
        for (std::size_t i = 0; i < open_.size(); ++i) {
            const bool last = i + 1 == open_.size();
            const std::vector<JsonValue>& children = open_[i]->children;
            if (open_[i]->kind == JsonValue::Kind::Array) {
                const std::size_t index = last ? children.size() : children.size() - 1;
                path += "[" + std::to_string(index) + "]";
                continue;
            }
            path += path.empty() ? "" : ".";
            path += shownText(last ? name_ : open_[i + 1]->name);
        }
        return path;
    }

    bool stop(const std::string& reason) {
        error_ = path() + ": " + reason;
        return false;
    }

    std::string_view text_;
    JsonValue root_;
    std::vector<JsonValue*> open_;  // a value's siblings come after it is closed
    std::string name_;              // of the member that comes next
    std::string error_;
};

}  // namespace

const JsonValue* JsonValue::member(std::string_view memberName) const {
    for (const JsonValue& child : children) {
        if (child.name == memberName) {
            return &child;
        }
    }
    return nullptr;
}

std::string_view kindWords(JsonValue::Kind kind) {
    switch (kind) {
        case JsonValue::Kind::Null:
            return "null";
        case JsonValue::Kind::Bool:
            return "true or false";
        case JsonValue::Kind::Number:
            return "a number";
        case JsonValue::Kind::Text:
            return "a text";
        case JsonValue::Kind::Array:
            return "an array";
        case JsonValue::Kind::Object:
            break;
    }
    return "an object";
}

std::string shownText(std::string_view text) {
    if (text.size() <= kLongestShown) {
        return std::string(text);
    }
    std::size_t end = kLongestShown;
    // Not within a character.
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U) {
        --end;
    }
    return std::string(text.substr(0, end)) + "...";
}

std::string parseJson(std::string_view text, JsonValue& value) {
    Builder builder(text);
    const bool whole = nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    if (!whole) {
        return builder.error().empty() ? "no JSON" : builder.error();
    }
    value = builder.take();
    return {};
}

}  // namespace orv::cli
