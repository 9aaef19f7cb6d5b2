#include "batch/batch_folder.h"

#include <cerrno>
#include <cstring>

#include "files/path_names.h"
#include "system/file_system.h"

namespace orv::cli {

namespace {

std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of('/'));
}

/// Replaces what stands at the place of a result; a link stays one, and permissions stay.
///
/// Fails:   false, with errno.
bool renameOver(const std::string& from, const std::string& to) {
    FileState state;
    std::string target;
    if (readState(to, state)) {
        if (state.kind != FileKind::Regular) {
            errno = state.kind == FileKind::Folder ? EISDIR : EEXIST;
            return false;
        }
        if (!isWritable(to)) {
            return false;
        }
        setPermissions(from, state.mode);
        target = resolvedPath(to);
    }
    return replaceFile(from, target.empty() ? to : target);
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
    const bool there = leadsSomewhere(name);
    if (there && !isFolder(name)) {
        return name + ": is a file, and -o names the folder that results go into";
    }
    if (!makeFolders(name + "/" + kRecords)) {
        return name + ": can't be written: " + std::strerror(errno);
    }
    if (!lock_.take(name + "/" + kRecords)) {
        return name + ": another batch writes into this folder; wait for it or take another -o";
    }
    folder_ = name;
    made_ = !there;
    removeTree(work());
    return makeFolders(work()) ? std::string()
                               : name + ": can't be written: " + std::strerror(errno);
}

std::string BatchFolder::emptySlot(int slot) const {
    const std::string name = work() + "/" + std::to_string(slot);
    removeTree(name);
    return makeFolders(name) ? name + "/" : std::string();
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
        if (!makeFolders(folderOf(path))) {
            return folderOf(path) + ": can't be made: " + std::strerror(errno);
        }
    }
    if (!replaceFile(stagedRecipe, file.recipe)) {
        return file.recipe + ": can't be written: " + std::strerror(errno);
    }
    if (overwrite ? renameOver(staged, file.output) : renameToFree(staged, file.output)) {
        return {};
    }
    const int error = errno;
    removeFile(file.recipe);
    return file.output + (error == EEXIST
                              ? ": exists already; --force overwrites it"
                              : std::string(": can't be written: ") + std::strerror(error));
}

void BatchFolder::close() {
    if (folder_.empty()) {
        return;
    }
    removeTree(work());
    removeFolder(records());
    if (made_) {
        removeFolder(folder_);
    }
    lock_.release();
    folder_.clear();
}

}  // namespace orv::cli
