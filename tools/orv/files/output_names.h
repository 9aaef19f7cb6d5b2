#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/input_files.h"

namespace orv::cli {

/// Where results go.
struct OutputOrder {
    std::string output;   ///< -o: a file, a folder or "-"; empty: beside each picture
    std::string pattern;  ///< --name; empty: the usual name
    std::string suffix = "restored";  ///< what tells a result from its picture beside it
    std::string verb;                 ///< for {verb}
    std::string ending;               ///< of --format, with its dot; empty: that of the picture
    bool intoFolder = false;          ///< whether -o is a folder whatever it looks like
    bool severalNamed = false;  ///< whether there were several words, even for one picture
};

/// The fields of a pattern, for help and messages.
///
///     {stem}    name of the picture without its ending
///     {ext}     ending of the result with its dot
///     {name}    name of the picture with its own ending
///     {verb}    what was done
///     {n}       number of the picture from 1, with as many digits as the last one has
///     {folder}  folders of the picture below the folder that was named, with '/' at the end, or
///               nothing; without it they are kept before the name
std::string patternFields();

/// What is wrong with a pattern, as one line that begins with "--name"; empty when nothing is.
std::string patternRefusal(const std::string& pattern);

/// "a/b.restored.jpg" for "a/b.jpg".
///
/// An empty `ending` keeps that of the picture, or ".png" where orv can't write it.
std::string outputBeside(const std::string& input, std::string_view suffix = "restored",
                         std::string_view ending = {});

/// Whether -o is a folder for these pictures: it exists as one, ends in '/', or is told to be one;
/// or there may be several pictures (several words, a folder, a pattern, a pattern of names) and
/// its ending isn't that of a picture.
bool isOutputFolder(const std::vector<InputFile>& inputs, const OutputOrder& order);

/// The path of the result of each input, in their order; "-" is standard output.
///
/// A picture from standard input goes to standard output when no output is named.
///
/// Fails:   with one line: a bad pattern, several pictures for one file, two pictures for one
///          name, a result over another picture. An empty text means success.
std::string planOutputs(const std::vector<InputFile>& inputs, const OutputOrder& order,
                        std::vector<std::string>& outputs);

}  // namespace orv::cli
