#include "methods/json_text.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>

#include "methods/parameter.h"

namespace orv {

namespace {

std::string jsonNumber(double value) {
    return std::isfinite(value) ? numberText(value) : "null";
}

}  // namespace

void JsonText::newItem() {
    if (closers_.empty()) {
        return;
    }
    text_ += first_ ? "\n" : ",\n";
    text_.append(closers_.size() * 2, ' ');
    first_ = false;
}

void JsonText::begin(char open, char close) {
    text_ += open;
    closers_.push_back(close);
    first_ = true;
}

void JsonText::quoted(std::string_view text) {
    text_ += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            text_ += '\\';
            text_ += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x",
                          static_cast<unsigned>(static_cast<unsigned char>(c)));
            text_ += escape.data();
        } else {
            text_ += c;
        }
    }
    text_ += '"';
}

void JsonText::name(std::string_view name) {
    newItem();
    quoted(name);
    text_ += ": ";
}

void JsonText::beginArray() {
    newItem();
    begin('[', ']');
}

void JsonText::beginArray(std::string_view memberName) {
    name(memberName);
    begin('[', ']');
}

void JsonText::beginObject() {
    newItem();
    begin('{', '}');
}

void JsonText::beginObject(std::string_view memberName) {
    name(memberName);
    begin('{', '}');
}

void JsonText::end() {
    const char closer = closers_.back();
    closers_.pop_back();
    if (!first_) {
        text_ += '\n';
        text_.append(closers_.size() * 2, ' ');
    }
    text_ += closer;
    first_ = false;
}

void JsonText::member(std::string_view memberName, std::string_view text) {
    name(memberName);
    quoted(text);
}

void JsonText::memberNumber(std::string_view memberName, double value) {
    name(memberName);
    text_ += jsonNumber(value);
}

void JsonText::memberNumbers(std::string_view memberName, std::span<const double> values) {
    name(memberName);
    text_ += '[';
    for (std::size_t i = 0; i < values.size(); ++i) {
        text_ += i == 0 ? "" : ", ";
        text_ += jsonNumber(values[i]);
    }
    text_ += ']';
}

void JsonText::memberDigits(std::string_view memberName, std::string_view digits) {
    name(memberName);
    text_ += digits;
}

void JsonText::memberBool(std::string_view memberName, bool value) {
    name(memberName);
    text_ += value ? "true" : "false";
}

void JsonText::element(std::string_view text) {
    newItem();
    quoted(text);
}

std::string JsonText::take() {
    text_ += '\n';
    first_ = true;
    return std::exchange(text_, {});
}

}  // namespace orv
