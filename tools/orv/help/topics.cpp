#include "help/topics.h"

#include <algorithm>
#include <array>

#include "files/image_file.h"
#include "files/library_codec.h"
#include "recipe/presets.h"

namespace orv::cli {

namespace {

std::string exitCodes() {
    return "  0    done\n"
           "  1    some pictures of several failed; the others are done\n"
           "  2    the command line is wrong\n"
           "  3    a file can't be read\n"
           "  4    a file can't be written, or exists and --force isn't given\n"
           "  5    the method refused the picture, or its result isn't finite, or isn't the\n"
           "       one that a recipe names\n"
           "  6    more memory is needed than may be used\n"
           "  130  interrupted: the shell's number for a run that ended by Ctrl-C\n"
           "\n"
           "An error is one line on standard error: what, where, how to go on. A failed or "
           "interrupted run leaves no half file and no temporary one: a picture is written "
           "under another name and renamed when it is whole.\n"
           "\n"
           "--quiet leaves errors alone: it hides progress, the line about the result, and "
           "warnings, such as that of a solver that spoils pictures.\n";
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string depthsOf(const FormatEntry& entry) {
    switch (entry.deepest) {
        case SampleDepth::Bits8:
            return "8";
        case SampleDepth::Bits16:
            return "8, 16";
        case SampleDepth::Float:
            break;
    }
    return "8, 16, float";
}

std::string formatRow(std::string_view name, std::string_view ending, std::string_view kept) {
    const FormatEntry* const entry = formatOfName("a" + std::string(ending));
    if (entry == nullptr) {
        return {};
    }
    return "  " + padded(std::string(name), 11) + padded(depthsOf(*entry), 14) +
           padded(entry->alpha ? "yes" : "no", 14) + std::string(kept) + "\n";
}

std::string formats() {
    std::string text = "  " + padded("Format", 11) + padded("Bits", 14) +
                       padded("Transparency", 14) + "Profile, EXIF, XMP\n";
    text += formatRow("PNG", ".png", "kept");
    text += formatRow("JPEG", ".jpg", "kept");
    text += formatRow("TIFF", ".tif", "profile, XMP");
    text += formatRow("WebP", ".webp", "kept");
    text += formatRow("BMP", ".bmp", "none");
    text += formatRow("PPM, PGM", ".ppm", "none");
    return text +
           "\n"
           "The ending of the output tells the format, or --format does. This build writes " +
           writableExtensions() +
           ".\n"
           "\n"
           "- Depth: 16 bits stay 16 and floats stay floats where the format holds them. The "
           "methods work on floats in any case, and samples are rounded once, at the end.\n"
           "- Transparency stays as it is, unless --alpha says otherwise; a format without "
           "any is refused.\n"
           "- A picture that its EXIF orientation turns comes upright.\n"
           "- JPEG and WebP are written with --quality 92, JPEG with full colour resolution.\n"
           "- A palette or CMYK becomes RGB. Several pages or frames are refused, and\n"
           "so are camera raw files, GIF, HEIC and JPEG XL: develop or convert them first.\n"
           "- Grey stays grey, but in .ppm.\n"
           "- --strip leaves metadata out, --strip=gps the place alone.\n" +
           codingNotes();
}

std::string chains() {
    return "A comma as a word of its own leads to the next method:\n"
           "\n"
           "  orv wavelet in.jpg , shock --iterations 2 , retinex -o out.jpg\n"
           "\n"
           "- Pictures stand before the first comma; -o names the output, in any part.\n"
           "- Options of a method stand in its part; those of files and runs may stand in "
           "any, once.\n"
           "- The picture is read once and written once, and stays in floats between the "
           "steps.\n"
           "- A later method that takes a second picture gets it as a word after its name or "
           "by --with.\n"
           "- Quote a comma where your shell needs it; most don't.\n"
           "\n"
           "--recipe writes the chain to a file, which orv run replays: see orv help "
           "recipes.\n";
}

std::string recipes() {
    std::string text =
        "A recipe is a JSON file that tells the steps of a run, so that it can be repeated:\n"
        "\n"
        "  orv restore a.jpg , shock -o b.jpg --recipe soft.json\n"
        "  orv run soft.json c.jpg\n"
        "\n"
        "A written recipe holds the version, all parameters, and hashes of the pixels that "
        "went in and came out: run on the same picture, orv run tells whether the same pixels "
        "came out. You may write one by hand; a name and a list of steps will do:\n"
        "\n"
        "  {\"format\": \"orv-recipe\", \"version\": 1,\n"
        "   \"steps\": [{\"verb\": \"restore\", \"parameters\": {\"steps\": 2}},\n"
        "             {\"verb\": \"shock\"}]}\n"
        "\n"
        "Presets are recipes that come with orv: orv restore --preset NAME IN, or orv run "
        "--preset NAME IN.\n"
        "\n";
    for (const Preset& preset : presets()) {
        text +=
            "  " + padded(std::string(preset.name), 12) + std::string(preset.summary) + "\n";
    }
    return text;
}

std::string choosing() {
    return "  Noise        restore first, without options; denoise keeps nearer to the\n"
           "               source; wavelet keeps fine texture; susan takes single specks\n"
           "  Softness     deblur brings texture back and noise with it; shock makes edges\n"
           "               steep and leaves the rest\n"
           "  Dark, light  retinex brightens the dark most; homomorphic evens all out\n"
           "  Colour       recolor takes the mood of another picture; colorize gives colour\n"
           "               to a grey one\n"
           "\n"
           "- Sharpening sharpens noise, and brightening brightens it: smooth first.\n"
           "- Too much costs more than too little. A smaller --strength is milder.\n"
           "- Noise in grains of several pixels passes as edges: scale the picture down by "
           "--max-side, or raise --sigma.\n"
           "- Strengths are in grey levels from 0 to 255, whatever the depth.\n"
           "- Noise is measured at the finest details. In enlarged pictures and strong JPEG\n"
           "it is coarser than that, and measured too low: give --strength.\n";
}

std::string environment() {
    return "- COLUMNS is the width of the progress bar where the terminal doesn't tell it.\n"
           "- TERM: with the value dumb, progress comes in lines.\n"
           "- ORV_MAX_TARGET keeps the engine from newer instruction sets: generic, avx2 or "
           "avx512. Results are the same bits.\n"
           "\n"
           "orv reads no configuration file and uses no network.\n";
}

constexpr std::array<HelpTopic, 6> kTopics{{
    {"choosing", "which method for which picture, and how strong", choosing},
    {"chains", "several methods in one go", chains},
    {"recipes", "repeat a run; presets", recipes},
    {"formats", "what each file format keeps", formats},
    {"exit-codes", "what orv hands back to the shell", exitCodes},
    {"environment", "variables that orv reads", environment},
}};

}  // namespace

std::span<const HelpTopic> helpTopics() {
    return kTopics;
}

const HelpTopic* findTopic(std::string_view name) {
    for (const HelpTopic& topic : kTopics) {
        const bool presets = name == "preset" || name == "presets";
        if (topic.name == (presets ? std::string_view("recipes") : name)) {
            return &topic;
        }
    }
    return nullptr;
}

}  // namespace orv::cli
