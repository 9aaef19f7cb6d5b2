#pragma once

#include <cstdint>
#include <string>

namespace orv::cli {

/// Keeps a folder for one process, until that ends at the latest. Files in it aren't touched.
class FolderLock {
  public:
    /// Keeps nothing.
    FolderLock() = default;
    /// Lets the folder go.
    ~FolderLock() { release(); }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// Takes a folder that exists. Where the system can't keep one, all go on unkept.
    ///
    /// Fails:   false when another process keeps it.
    bool take(const std::string& folder);

    /// Lets the folder go.
    void release();

  private:
    static constexpr std::intptr_t kNone = -1;

    std::intptr_t lock_ = kNone;  // a descriptor, or a handle of Windows
};

}  // namespace orv::cli
