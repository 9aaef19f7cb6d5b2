#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// What stands at a path.
enum class FileKind { Regular, Folder, Link, Pipe, Other };

/// What the system tells of a file.
struct FileState {
    FileKind kind = FileKind::Other;
    double bytes = 0.0;
    std::int64_t seconds = 0;                 ///< of its last change since 1970, in UTC
    long nanoseconds = 0;                     ///< the rest of that time
    unsigned mode = 0;                        ///< its permissions, as chmod has them
    std::array<std::uint64_t, 2> identity{};  ///< the same for all names of one file
};

// Paths are UTF-8 with '/' between their parts. What fails here leaves its reason in errno.

/// Reads the state of what a path leads to, through links.
///
/// Fails:   false when there is nothing.
bool readState(const std::string& path, FileState& state);

/// The same for a link itself.
bool readLinkState(const std::string& path, FileState& state);

/// Whether a path leads to something; a link that leads nowhere doesn't.
bool leadsSomewhere(const std::string& path);

/// Whether something has this name, be it a link that leads nowhere.
bool isTaken(const std::string& path);

/// Whether a path leads to a regular file.
bool isRegularFile(const std::string& path);

/// The size of a regular file; 0 where there is none.
double fileBytes(const std::string& path);

/// std::fopen() for a path of this kind.
///
/// Fails:   null.
std::FILE* openFile(const std::string& path, const char* mode);

/// Removes a file.
bool removeFile(const std::string& path);

/// Makes a folder below one that exists.
bool makeFolder(const std::string& path);

/// Makes a folder and those above it that are missing; success when there is one.
bool makeFolders(const std::string& path);

/// Removes a folder that is empty.
bool removeFolder(const std::string& path);

/// Removes a file, or a folder with all that is in it, as far as the system lets it go. Links are
/// not followed.
void removeTree(const std::string& path);

/// Gives a file another name, in one step and in place of what has that name.
bool replaceFile(const std::string& from, const std::string& to);

/// Gives a file a name that is free.
///
/// Fails:   with EEXIST when it isn't.
bool renameToFree(const std::string& from, const std::string& to);

/// Whether this process may write a file.
bool isWritable(const std::string& path);

/// Sets the permissions of a file, where the system has any.
void setPermissions(const std::string& path, unsigned mode);

/// The permissions of a new file.
unsigned usualPermissions();

/// Makes an empty file of a name that is free, in a folder with '/' at its end or the present one.
///
/// Fails:   an empty text.
std::string makeTemporaryFile(const std::string& folder, unsigned mode);

/// An absolute path without links and detours.
///
/// Fails:   an empty text, so when there is nothing at the path.
std::string resolvedPath(const std::string& path);

/// A text that is the same for all spellings of a path that the system takes for one: on Windows
/// those with large and with small letters. For comparison alone.
std::string foldedPath(const std::string& path);

/// What a path from the root begins with, to the slash: "/", or on Windows "C:/" and "//server/"
/// as well; empty for other paths.
std::string rootOf(const std::string& path);

/// All names in a folder but "." and "..", in any order.
bool listFolder(const std::string& folder, std::vector<std::string>& names);

/// Whether a name fits a pattern of the shell with *, ? and [...]; a dot at its head has to be
/// written out.
bool fitsPattern(const std::string& pattern, const std::string& name, bool anyCase);

}  // namespace orv::cli
