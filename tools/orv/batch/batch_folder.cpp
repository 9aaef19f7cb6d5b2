#include "batch/batch_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace orv::cli {

namespace {

namespace fs = std::filesystem;

/// Makes a folder and those above it.
///
/// Fails:   with the system's reason.
std::string makeFolders(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return error ? error.message() : std::string();
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of('/'));
}

/// Gives a file a name that is free.
///
/// Fails:   with the errno; 0 means success.
int renameToFree(const std::string& from, const std::string& to) {
    if (link(from.c_str(), to.c_str()) == 0) {
        unlink(from.c_str());
        return 0;
    }
    if (errno == EEXIST) {
        return EEXIST;
    }
    // Some file systems have no second names; there a gap remains between look and rename.
    struct stat status {};
    if (lstat(to.c_str(), &status) == 0) {
        return EEXIST;
    }
    return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

/// Replaces what stands at the place of a result; a link stays one, and permissions stay.
///
/// Fails:   with the errno; 0 means success.
int renameOver(const std::string& from, const std::string& to) {
    struct stat status {};
    std::string target = to;
    if (stat(to.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            return S_ISDIR(status.st_mode) ? EISDIR : EEXIST;
        }
        if (access(to.c_str(), W_OK) != 0) {
            return errno;
        }
        chmod(from.c_str(), status.st_mode & 0777);
        std::error_code error;
        const fs::path resolved = fs::canonical(to, error);
        target = error ? to : resolved.string();
    }
    return std::rename(from.c_str(), target.c_str()) == 0 ? 0 : errno;
}

}  // namespace

BatchFolder::~BatchFolder() {
    close();
}

std::string BatchFolder::open(const std::string& folder) {
    std::string name = folder;
    while (name.size() > 1 && name.back() == '/') {
        name.pop_back();
    }
    struct stat status {};
    const bool there = stat(name.c_str(), &status) == 0;
    if (there && !S_ISDIR(status.st_mode)) {
        return name + ": is a file, and -o names the folder that results go into";
    }
    const std::string reason = makeFolders(name + "/" + kRecords);
    if (!reason.empty()) {
        return name + ": can't be written: " + reason;
    }
    lock_ = ::open((name + "/" + kRecords).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock_ >= 0 && flock(lock_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::close(lock_);
        lock_ = -1;
        return name + ": another batch writes into this folder; wait for it or take another -o";
    }
    folder_ = name;
    made_ = !there;
    std::error_code error;
    fs::remove_all(work(), error);
    fs::create_directory(work(), error);
    return error ? name + ": can't be written: " + error.message() : std::string();
}

std::string BatchFolder::emptySlot(int slot) const {
    const std::string name = work() + "/" + std::to_string(slot);
    std::error_code error;
    fs::remove_all(name, error);
    fs::create_directory(name, error);
    return error ? std::string() : name + "/";
}

std::string BatchFolder::sharedFile(const std::string& name) const {
    return work() + "/" + name;
}

std::string BatchFolder::failureList() const {
    return records() + "/failed.txt";
}

std::string BatchFolder::publish(const std::string& staged, const std::string& stagedRecipe,
                                 const BatchFile& file, bool overwrite) const {
    for (const std::string& path : {file.recipe, file.output}) {
        const std::string reason = makeFolders(folderOf(path));
        if (!reason.empty()) {
            return folderOf(path) + ": can't be made: " + reason;
        }
    }
    if (std::rename(stagedRecipe.c_str(), file.recipe.c_str()) != 0) {
        return file.recipe + ": can't be written: " + std::strerror(errno);
    }
    const int error =
        overwrite ? renameOver(staged, file.output) : renameToFree(staged, file.output);
    if (error == 0) {
        return {};
    }
    unlink(file.recipe.c_str());
    return file.output + (error == EEXIST
                              ? ": exists already; --force overwrites it"
                              : std::string(": can't be written: ") + std::strerror(error));
}

void BatchFolder::close() {
    if (folder_.empty()) {
        return;
    }
    std::error_code error;
    fs::remove_all(work(), error);
    rmdir(records().c_str());
    if (made_) {
        rmdir(folder_.c_str());
    }
    ::close(lock_);
    lock_ = -1;
    folder_.clear();
}

}  // namespace orv::cli
