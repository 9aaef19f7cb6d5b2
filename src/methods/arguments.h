#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "methods/parameter.h"

namespace orv {

/// The values of a method's parameters, checked one by one as they are set.
///
/// Owns:    its values; the parameters must outlive it.
class Arguments {
  public:
    /// Every parameter at its default.
    explicit Arguments(std::span<const Parameter> parameters);

    /// Sets a parameter from a user's text.
    ///
    /// Fails:   with one line that begins with "--name: "; an empty text means success.
    std::string set(std::string_view name, std::string_view text);
    /// Sets a parameter from a number; a choice takes the engine's number.
    std::string setNumber(std::string_view name, double value);

    /// Sets a parameter that the user left open, as automation does; one that set() or
    /// setNumber() gave stays as it is.
    ///
    /// Numbers are brought into the range and rounded to three digits, so that the text of
    /// commandText() gives the same value again.
    void choose(std::string_view name, double value);
    /// Whether set() or setNumber() gave the value.
    bool isGiven(std::string_view name) const;
    /// Whether every value was given, so that automation has nothing to choose.
    bool allGiven() const;
    /// All that was given or chosen as a user would write it: " --tau 2 --flow TV".
    ///
    /// A new set of arguments that is given this text has the same values.
    std::string commandText() const;

    /// The value of a real parameter. A name that the method lacks gives 0, here and below.
    double real(std::string_view name) const;
    /// The value of an integer parameter, or the engine's number of a choice.
    int integer(std::string_view name) const;
    /// The value of a flag.
    bool flag(std::string_view name) const;
    /// The name of the chosen value, or an empty text.
    std::string_view choiceName(std::string_view name) const;

  private:
    /// Who set a value.
    enum class Origin { Default, Given, Chosen };

    int indexOf(std::string_view name) const;
    std::string unknownName(std::string_view name) const;

    std::span<const Parameter> parameters_;
    std::vector<double> values_;
    std::vector<Origin> origins_;
};

}  // namespace orv
