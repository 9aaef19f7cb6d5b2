#pragma once

#include <string>

#include "batch/batch_plan.h"
#include "system/folder_lock.h"

namespace orv::cli {

/// The folder that a batch writes into.
///
///     DIR/a/b.png              a result
///     DIR/.orv/a/b.png.json    its recipe
///     DIR/.orv/failed.txt      what failed in the last batch, with the reasons
///     DIR/.orv/.work/2/        where the second worker writes, while a batch runs
///
/// Whatever a run leaves in .work, should it be killed, the next one removes.
class BatchFolder {
  public:
    /// Nothing yet.
    BatchFolder() = default;
    ~BatchFolder();
    BatchFolder(const BatchFolder&) = delete;
    BatchFolder& operator=(const BatchFolder&) = delete;

    /// Makes the folder and locks it against a second batch.
    ///
    /// Fails:   with one line; an empty text means success.
    std::string open(const std::string& folder);

    /// An empty folder for worker `slot`, with '/' at its end.
    ///
    /// Fails:   an empty text.
    std::string emptySlot(int slot) const;

    /// A file beside the slots, for what all workers read.
    std::string sharedFile(const std::string& name) const;

    /// Where failures are listed.
    std::string failureList() const;

    /// Gives a result and its recipe their names, the recipe first: a result never stands
    /// without its recipe.
    ///
    /// Fails:   with a reason; an empty text means success. A file that came to the place of
    ///          the result in the meantime stays, unless `overwrite`.
    std::string publish(const std::string& staged, const std::string& stagedRecipe,
                        const BatchFile& file, bool overwrite) const;

    /// Removes what workers left, and folders that stayed empty.
    void close();

    /// The folder of recipes below the folder of results, without '/' before and after.
    static constexpr const char* kRecords = ".orv";

  private:
    std::string records() const { return folder_ + "/" + kRecords; }
    std::string work() const { return records() + "/.work"; }

    std::string folder_;  // empty when not open
    bool made_ = false;   // whether this batch made it
    FolderLock lock_;
};

}  // namespace orv::cli
