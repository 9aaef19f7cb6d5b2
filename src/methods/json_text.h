#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

/// Builds indented JSON text, piece by piece.
///
/// Domain:  UTF-8 texts; every begin has its end.
class JsonText {
  public:
    /// Opens an array, as an element or at the top.
    void beginArray();
    /// Opens an array as a member of an object.
    void beginArray(std::string_view name);
    /// Opens an object, as an element or at the top.
    void beginObject();
    /// Opens an object as a member of an object.
    void beginObject(std::string_view name);
    /// Closes what was opened last.
    void end();

    /// Adds a text to an object.
    void member(std::string_view name, std::string_view text);
    /// Adds a number to an object; one that isn't finite becomes null.
    void memberNumber(std::string_view name, double value);
    /// Adds an array of numbers to an object, all in one line.
    void memberNumbers(std::string_view name, std::span<const double> values);
    /// Adds a number to an object, with the digits it is given.
    ///
    /// Domain:  digits that make a JSON number.
    void memberDigits(std::string_view name, std::string_view digits);
    /// Adds true or false to an object.
    void memberBool(std::string_view name, bool value);
    /// Adds a text to an array.
    void element(std::string_view text);

    /// The text with a line break at the end; the builder is empty from then on.
    std::string take();

  private:
    void newItem();
    void begin(char open, char close);
    void name(std::string_view name);
    void quoted(std::string_view text);

    std::string text_;
    std::vector<char> closers_;
    bool first_ = true;
};

}  // namespace orv
