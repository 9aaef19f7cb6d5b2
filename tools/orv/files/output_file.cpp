#include "files/output_file.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "files/path_names.h"
#include "system/console.h"
#include "system/file_system.h"
#include "terminal/interruption.h"

namespace orv::cli {

namespace {

constexpr const char* kIsFolder = ": is a folder; name a file in it";

std::string systemError(const std::string& path, int error) {
    return path +
           ": can't be written: " + (error == ENOENT ? "no such folder" : std::strerror(error));
}

/// "a/b" of "a/b/c", "/" of "/c", "" of "c".
std::string folderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? "" : path.substr(0, slash == 0 ? 1 : slash);
}

std::string writeStream(std::FILE* file, const void* bytes, std::size_t count) {
    const bool whole = std::fwrite(bytes, 1, count, file) == count && std::fflush(file) == 0;
    return whole ? std::string() : std::strerror(errno);
}

std::string writeFile(const std::string& path, const void* bytes, std::size_t count) {
    std::FILE* const file = openFile(path, "wb");
    if (file == nullptr) {
        return std::strerror(errno);
    }
    std::string error = writeStream(file, bytes, count);
    if (std::fclose(file) != 0 && error.empty()) {
        error = std::strerror(errno);
    }
    return error;
}

}  // namespace

OutputFile::~OutputFile() {
    remove();
}

void OutputFile::remove() {
    const InterruptionPause pause;
    if (!temporary_.empty()) {
        removeFile(temporary_);
        dropUnfinished(place_);
        temporary_.clear();
    }
    for (; !folders_.empty(); folders_.pop_back()) {
        removeFolder(folders_.back().first);
        dropUnfinished(folders_.back().second);
    }
}

std::string OutputFile::makeFolders() {
    std::vector<std::string> missing;
    for (std::string folder = folderOf(target_); !folder.empty() && !leadsSomewhere(folder);
         folder = folderOf(folder)) {
        missing.push_back(folder);
    }
    for (; !missing.empty(); missing.pop_back()) {
        const std::string& folder = missing.back();
        const InterruptionPause pause;
        // Another run may make the same folder at the same time.
        if (makeFolder(folder)) {
            folders_.emplace_back(folder, addUnfinished(folder, /*folder=*/true));
        } else if (errno != EEXIST) {
            return path_ + ": the folder " + folder + " can't be made: " + std::strerror(errno);
        }
    }
    return {};
}

std::string OutputFile::makeTemporary(unsigned mode) {
    const std::size_t slash = target_.find_last_of('/');
    const InterruptionPause pause;
    const std::string name = makeTemporaryFile(
        slash == std::string::npos ? std::string() : target_.substr(0, slash + 1), mode);
    if (name.empty()) {
        return systemError(path_, errno);
    }
    place_ = addUnfinished(name);
    temporary_ = name;
    return {};
}

std::string OutputFile::open(const std::string& path, bool overwrite) {
    path_ = path;
    target_ = path;
    unsigned mode = usualPermissions();
    FileState state;
    if (readState(path, state)) {
        if (state.kind == FileKind::Folder) {
            return path + kIsFolder;
        }
        if (state.kind != FileKind::Regular) {
            return path + ": is no regular file";
        }
        if (!overwrite) {
            return path + ": exists already; --force overwrites it";
        }
        if (!isWritable(path)) {
            return systemError(path, errno);
        }
        mode = state.mode;
        const std::string resolved = resolvedPath(path);
        if (!resolved.empty()) {
            target_ = resolved;
        }
    } else if (isTaken(path)) {
        return path + ": is a link that leads nowhere; remove it or name another file";
    }

    // A run that failed may take away the folder that both needed, between the two steps.
    constexpr int kAttempts = 3;
    std::string error;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        error = makeFolders();
        if (error.empty()) {
            error = makeTemporary(mode);
        }
        if (error.empty() || leadsSomewhere(folderOf(target_))) {
            break;
        }
    }
    if (!error.empty()) {
        remove();
    }
    return error;
}

std::string OutputFile::commit() {
    const InterruptionPause pause;
    if (!replaceFile(temporary_, target_)) {
        const std::string error = systemError(path_, errno);
        remove();
        return error;
    }
    dropUnfinished(place_);
    for (; !folders_.empty(); folders_.pop_back()) {
        dropUnfinished(folders_.back().second);
    }
    setResultWritten();
    temporary_.clear();
    return {};
}

bool isSameFile(const std::string& a, const std::string& b) {
    FileState first;
    FileState second;
    return a == b ||
           (readState(a, first) && readState(b, second) && first.identity == second.identity);
}

std::string writeBytes(const std::string& path, const std::vector<unsigned char>& bytes) {
    return writeFile(path, bytes.data(), bytes.size());
}

std::string writeText(const std::string& path, std::string_view text) {
    return writeFile(path, text.data(), text.size());
}

std::string endingRefusal(const std::string& path, std::string_view what,
                          std::string_view endings) {
    return isFolder(path) ? path + kIsFolder
                          : path + ": the ending names no " + std::string(what) +
                                " that orv writes (" + std::string(endings) + ")";
}

std::string standardOutputRefusal() {
    return !isTerminal(Stream::Output) ? std::string()
                                       : "standard output: is a terminal, which shows no "
                                         "pictures; send it to a file or "
                                         "a pipe, or name a file by -o";
}

std::string writeStandardOutput(const std::vector<unsigned char>& bytes) {
    std::string error = standardOutputRefusal();
    if (error.empty()) {
        error = writeStream(stdout, bytes.data(), bytes.size());
        error = error.empty() ? error : "standard output: can't be written: " + error;
    }
    return error;
}

}  // namespace orv::cli
