#include "batch/batch_options.h"

#include <array>

namespace orv::cli {

namespace {

constexpr std::array<Option, 6> kBatch{{
    {"recursive", '\0', OptionKind::Flag, "", "",
     "search folders to their depth; the results keep the tree"},
    {"include", '\0', OptionKind::Value, "PATTERNS", "patterns such as '*.jpg,*.png'",
     "take the files of folders that match one of these, as '*.jpg,*.png' "
     "[default: all pictures]"},
    {"name", '\0', OptionKind::Value, "PATTERN", "a pattern such as '{stem}{ext}'",
     "names of the results from {stem} {ext} {name} {verb} {n} {folder} "
     "[default: '{stem}{ext}']"},
    {"resume", '\0', OptionKind::Flag, "", "",
     "go on where a batch ended: what is finished, as its recipe in DIR/.orv tells, is "
     "skipped"},
    {"jobs", '\0', OptionKind::Value, "N", "a whole number from 1 to 256",
     "pictures at a time, each in a process of its own; more is faster up to the number of "
     "processors and takes more memory [default: one a processor]"},
    {"report", '\0', OptionKind::Value, "FILE", "a file that ends in .html",
     "write a page with every picture before and after, its time and what failed",
     ValueKind::File},
}};

constexpr std::array<Option, 2> kTarget{{
    {"output", 'o', OptionKind::Value, "DIR", "a folder",
     "the folder for the results, made when it is missing", ValueKind::Folder},
    {"force", 'f', OptionKind::Flag, "", "", "make results again that exist"},
}};

}  // namespace

constinit const OptionGroup kBatchOptions{"Batch", kBatch};
constinit const OptionGroup kBatchTargetOptions{"Results", kTarget};

}  // namespace orv::cli
