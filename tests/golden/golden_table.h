#pragma once

#include <string>
#include <vector>

namespace golden {

/// What a call left behind; every field is compared as text.
struct Outcome {
    std::string size;      ///< "64x48"; "null" for a null handle, "none" where none is returned
    std::string pixels;    ///< hash of the packed rows; "-" without a picture
    std::string out;       ///< hash of what went to the standard output; "-" for nothing
    std::string err;       ///< hash of what went to the standard error stream
    std::string progress;  ///< the values, or their number, range and hash; "-" for none
};

/// One line of the table.
struct Case {
    std::string name;
    std::string function;
    std::string arguments;  ///< those that are no handle, in the order of orv.h
    std::string pictures;   ///< a recipe for each handle
    int calls = 1;          ///< how often in a row; the last one is looked at
    Outcome expected;
};

/// The title of a field of Outcome and the field.
struct OutcomeField {
    const char* title;
    std::string Outcome::*value;
};

/// The fields in the order of the columns.
extern const OutcomeField kOutcomeFields[5];

/// Reads the table.
///
/// A line may end after `calls`: its outcome is then "?", for a case that is to be written.
/// Fails:   false when the file can't be read or a line isn't one; `error` says why.
bool readTable(const char* path, std::vector<Case>& cases, std::string& error);

/// The line of the header, without its end.
std::string tableHeader();

/// The line of one case with the given outcome, without its end.
std::string tableLine(const Case& one, const Outcome& outcome);

}  // namespace golden
