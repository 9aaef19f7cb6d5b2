#include "options/common_options.h"

#include <array>

namespace orv::cli {

namespace {

constexpr Option kForce{"force", 'f', OptionKind::Flag,
                        "",      "",  "overwrite what exists, even IN itself"};
constexpr Option kHelp{"help", 'h', OptionKind::Flag, "", "", "show this"};
constexpr Option kJson{"json", '\0', OptionKind::Flag, "", "", "as JSON text, for programs"};
constexpr Option kQuiet{"quiet", 'q', OptionKind::Flag,
                        "",      "",  "errors alone: no progress, warnings, result line"};
constexpr Option kProgress{"progress",
                           '\0',
                           OptionKind::Value,
                           "HOW",
                           "bar, lines, json or none",
                           "how progress shows on standard error: bar, lines, json or none "
                           "[default: bar on a terminal, else lines]",
                           ValueKind::Words,
                           "bar lines json none"};

constexpr std::array<Option, 7> kFiles{{
    {"output", 'o', OptionKind::Value, "OUT", "a file, a folder, or - for standard output",
     "file, folder for several pictures, or - for standard output [default: beside IN]; "
     "restore names it NAME.restored.EXT, blur NAME.blur.EXT",
     ValueKind::File},
    kForce,
    {"format", '\0', OptionKind::Value, "NAME", "png, jpeg, tiff, webp, bmp, ppm or pgm",
     "png, jpeg, tiff, webp, bmp, ppm or pgm [default: by the ending of OUT]", ValueKind::Words,
     "png jpeg tiff webp bmp ppm pgm"},
    {"quality", '\0', OptionKind::Value, "N", "a whole number from 1 to 100",
     "of JPEG and WebP, 1 to 100: larger is finer and longer [default: 92]"},
    {"strip", '\0', OptionKind::Maybe, "WHAT", "all, gps or exif",
     "leave out metadata: gps: the place; exif: EXIF, XMP and IPTC; all: everything but "
     "the colour profile",
     ValueKind::Words, "all gps exif", "all"},
    {"alpha", '\0', OptionKind::Value, "HOW", "keep, restore or drop",
     "transparency: keep it untouched, restore it like a colour, drop it [default: keep]",
     ValueKind::Words, "keep restore drop"},
    {"max-side", '\0', OptionKind::Value, "PIXELS", "a whole number from 1 to 1000000",
     "scale the picture down first until no side is longer; larger keeps more detail"},
}};

constexpr std::array<Option, 1> kSecond{{
    {"with", '\0', OptionKind::Value, "FILE", "a picture file",
     "the second picture, where it isn't the second word", ValueKind::File},
}};

constexpr std::array<Option, 2> kRecords{{
    {"recipe", '\0', OptionKind::Value, "FILE", "a file that ends in .json",
     "write what was done as JSON; orv run replays it", ValueKind::File},
    {"compare", '\0', OptionKind::Value, "FILE", "a file that ends in .html, .json or .png",
     "write a before and after page (.html), picture (.png) or figures (.json)",
     ValueKind::File},
}};

constexpr std::array<Option, 4> kRun{{
    {"max-memory", '\0', OptionKind::Value, "SIZE", "a size such as 2G, 500M or 75%",
     "the most memory to use, as 2G, 500M or 75%; larger takes larger pictures "
     "[default: 75% of what is free]"},
    kProgress,
    kQuiet,
    kHelp,
}};

constexpr std::array<Option, 3> kReportRun{kProgress, kQuiet, kHelp};
constexpr std::array<Option, 2> kListing{kJson, kHelp};
constexpr std::array<Option, 1> kHelpAlone{kHelp};

}  // namespace

constinit const OptionGroup kFileOptions{"Files", kFiles};
constinit const OptionGroup kSecondOptions{"Second picture", kSecond};
constinit const OptionGroup kRecordOptions{"Records", kRecords};
constinit const OptionGroup kRunOptions{"Running", kRun};
constinit const OptionGroup kReportRunOptions{"Running", kReportRun};
constinit const OptionGroup kListingOptions{"Options", kListing};
constinit const OptionGroup kHelpOptions{"Options", kHelpAlone};

}  // namespace orv::cli
