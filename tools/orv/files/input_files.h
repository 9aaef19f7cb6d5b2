#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// A picture to read.
struct InputFile {
    std::string path;      ///< "-" for standard input
    std::string relative;  ///< below the folder or pattern that named it, or its name alone
    bool found = false;    ///< whether a folder or a pattern named it
};

/// How words become pictures.
struct InputSettings {
    bool recursive = false;  ///< whether folders are searched to their depth
    /// Patterns that files of folders have to match, one of them; without any, files whose ending
    /// is that of a picture are taken. A pattern with '/' is held against the path below the
    /// folder, others against the name; case doesn't count.
    std::vector<std::string> include;
    /// What the tool puts into the names of its results, as "restored" in NAME.restored.EXT.
    std::vector<std::string> suffixes{"restored"};
};

/// Whether one name sorts before another as people count: a2.png before a10.png.
bool naturallyBefore(std::string_view a, std::string_view b);

/// The pictures that the words of a command line name, in their order.
///
/// A word is a file, a folder, or a pattern of the shell that the shell left alone ("**" stands
/// for folders of any depth). "-" is standard input and stands alone. Folders give their pictures
/// in natural order, without hidden files and without following links to folders. A file that
/// comes twice is taken once; NAME.restored.EXT is left out where NAME itself is among the
/// pictures. A plain word that names nothing stays, so that reading it says what is wrong.
///
/// Fails:   with one line: nothing found, "-" among others. An empty text means success; notes
///          then tell what was left out, a line each.
std::string expandInputs(const std::vector<std::string>& words, const InputSettings& settings,
                         std::vector<InputFile>& files, std::vector<std::string>& notes);

}  // namespace orv::cli
