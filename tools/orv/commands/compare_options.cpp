#include "commands/compare_options.h"

#include <array>
#include <string_view>

#include "commands/commands.h"
#include "options/common_options.h"

namespace orv::cli {

namespace {

constexpr std::array<Option, 3> kOptions{{
    {"output", 'o', OptionKind::Value, "FILE",
     "a file that ends in .html, .json or as a picture does",
     "write the comparison: .html is a page with a before/after slider, zoom, difference and "
     "histograms that needs nothing else; a picture shows both and their difference side by "
     "side; .json has all figures",
     ValueKind::File},
    {"force", 'f', OptionKind::Flag, "", "", "overwrite FILE if it exists"},
    {"json", '\0', OptionKind::Flag, "", "", "print all figures as JSON in place of the table"},
}};
constinit const OptionGroup kCompareOptions{"Comparison", kOptions};

constexpr std::string_view kAbout =
    "The pictures have one size; depth and format may differ. All differences count in grey "
    "levels from 0 (black) to 255 (white), also those of 16-bit and float pictures.";

constexpr std::string_view kNotes =
    "PSNR: 10 log10(255^2 / mean squared difference) of all colour channels; larger is nearer, "
    "infinite for equal pictures.\n"
    "SSIM: structural similarity of the brightness (Rec. 601) under a Gaussian window of 11 x "
    "11 pixels that stays inside the picture; 1 for equal pictures.\n"
    "A grey picture against one in colour counts as three equal channels. Alpha is told apart "
    "and counts in no figure.";

}  // namespace

Verb compareVerb() {
    Verb verb;
    verb.name = "compare";
    verb.summary = "Tell how far apart two pictures are, and show where";
    verb.words = "BEFORE AFTER";
    verb.groups = {&kCompareOptions, &kReportRunOptions};
    verb.about = kAbout;
    verb.notes = kNotes;
    verb.example = "orv compare photo.jpg photo.restored.jpg -o compare.html";
    verb.run = compareCommand;
    return verb;
}

}  // namespace orv::cli
