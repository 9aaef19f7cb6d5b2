#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv::cli {

/// A result file in the making: it lies under another name in the same folder until it is whole.
///
/// The other name, and folders that were made for it, are removed by the destructor and by an
/// interruption. Several may be in the making at a time.
class OutputFile {
  public:
    /// Nothing yet.
    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Makes the file under its other name, and the folders above it that are missing.
    ///
    /// A link stays one: the file that it points at is replaced.
    ///
    /// Fails:   with one line about `path`: it exists and `overwrite` is false, it is no
    ///          regular file, its folder can't be made or written. An empty text means success.
    std::string open(const std::string& path, bool overwrite);

    /// Where to write until commit().
    const std::string& temporaryPath() const { return temporary_; }

    /// Gives the file its name.
    ///
    /// Fails:   with one line; the other name is then removed.
    std::string commit();

    /// The file as the user named it, for messages.
    const std::string& path() const { return path_; }

  private:
    std::string makeTemporary(unsigned mode);
    std::string makeFolders();
    void remove();

    std::string path_;       // as the user named it
    std::string target_;     // what it points at, should it be a link
    std::string temporary_;  // empty when there is none
    int place_ = -1;         // of the temporary file among the unfinished ones
    std::vector<std::pair<std::string, int>> folders_;  // made for it, with their places
};

/// Whether two paths lead to one file, or are the same text.
bool isSameFile(const std::string& a, const std::string& b);

/// Writes bytes to a file that exists or can be made.
///
/// Fails:   with the system's reason; an empty text means success.
std::string writeBytes(const std::string& path, const std::vector<unsigned char>& bytes);

/// The same for a text.
std::string writeText(const std::string& path, std::string_view text);

/// Writes bytes, and nothing else, to standard output.
///
/// Fails:   with one line, so when it is a terminal; an empty text means success.
std::string writeStandardOutput(const std::vector<unsigned char>& bytes);

/// Why a path whose ending isn't known can't be written: "a.xyz: the ending names no report that
/// orv writes (.html .csv)", or that it is a folder.
std::string endingRefusal(const std::string& path, std::string_view what,
                          std::string_view endings);

/// What forbids writing a picture to standard output, as one line; empty when nothing does.
std::string standardOutputRefusal();

}  // namespace orv::cli
