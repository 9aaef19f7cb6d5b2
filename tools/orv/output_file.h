#pragma once

#include <string>

namespace orv::cli {

/// A result file in the making: it lies under another name in the same folder until it is whole.
///
/// The other name is removed by the destructor and by an interruption. One at a time.
class OutputFile {
  public:
    /// Nothing yet.
    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Makes the file under its other name.
    ///
    /// Fails:   with one line about `path`: it exists and `overwrite` is false, it is no
    ///          regular file, its folder can't be written. An empty text means success.
    std::string open(const std::string& path, bool overwrite);

    /// Where to write until commit().
    const std::string& temporaryPath() const { return temporary_; }

    /// Gives the file its name.
    ///
    /// Fails:   with one line; the other name is then removed.
    std::string commit();

  private:
    void remove();

    std::string path_;       // as the user named it
    std::string target_;     // what it points at, should it be a link
    std::string temporary_;  // empty when there is none
};

}  // namespace orv::cli
