#include "recipe/recipe_fields.h"

#include <limits>

#include "methods/parameter.h"
#include "methods/suggestion.h"
#include "recipe/pixel_hash.h"

namespace orv::cli {

namespace {

using Kind = JsonValue::Kind;

std::string listed(std::span<const std::string_view> names) {
    std::string text;
    for (const std::string_view name : names) {
        text += text.empty() ? "" : ", ";
        text += name;
    }
    return text;
}

}  // namespace

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

}  // namespace orv::cli
