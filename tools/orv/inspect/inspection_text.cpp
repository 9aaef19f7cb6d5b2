#include <algorithm>
#include <array>
#include <cstdio>

#include "files/file_format.h"
#include "inspect/inspection.h"
#include "memory/memory_limit.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kColumn = 14;
constexpr std::size_t kMethodColumns = 3;

/// "  name        text", with the text wrapped under itself.
std::string row(std::string_view name, const std::string& text) {
    std::string lines = "  " + std::string(name);
    lines.resize(kColumn, ' ');
    std::size_t at = kColumn;
    std::size_t from = 0;
    while (from < text.size()) {
        std::size_t end = std::min(text.find(' ', from), text.size());
        if (at > kColumn && at + 1 + end - from > kWidth) {
            lines += "\n" + std::string(kColumn, ' ');
            at = kColumn;
        } else if (at > kColumn) {
            lines += ' ';
            ++at;
        }
        lines += text.substr(from, end - from);
        at += end - from;
        from = end + 1;
    }
    return lines + "\n";
}

std::string sizeRow(const PictureHeader& header) {
    const double pixels = static_cast<double>(header.width) * header.height;
    return std::to_string(header.width) + " x " + std::to_string(header.height) + " pixels, " +
           (pixels < 1e5 ? std::to_string(static_cast<int>(pixels)) + " in all"
                         : oneDecimal(pixels / 1e6) + " megapixels");
}

std::string formatRow(const PictureHeader& header) {
    const FormatEntry* const entry = formatEntry(header.format);
    std::string text = entry == nullptr ? "" : std::string(entry->name) + ", ";
    text += header.depth == SampleDepth::Float
                ? "float"
                : std::to_string(8 * bytesOf(header.depth)) + "-bit";
    text += header.colours == 1 ? " grey" : " colour";
    text += header.palette ? " by a palette" : header.cmyk ? ", stored as CMYK" : "";
    text += header.alpha ? ", with transparency" : "";
    return text + ", " + sizeText(header.fileBytes);
}

std::string orientationRow(const PictureHeader& header) {
    if (header.orientation <= 1) {
        return "upright";
    }
    return "stored " + std::string(orientationText(header.orientation)) + " (EXIF " +
           std::to_string(header.orientation) + "); orv turns it upright";
}

std::string metadataRow(const PictureHeader& header) {
    std::string text;
    const auto add = [&](bool has, std::string_view name) {
        if (has) {
            text += (text.empty() ? "" : ", ") + std::string(name);
        }
    };
    add(header.exif, "EXIF");
    add(header.xmp, "XMP");
    add(header.iptc, "IPTC");
    if (text.empty()) {
        return "none";
    }
    return text + (header.gps ? "; tells the PLACE (GPS), --strip=gps leaves it out" : "");
}

std::string noiseRow(const NoiseEstimate& noise) {
    std::string text = noiseText(noise);
    constexpr std::string_view kStart = "noise ";
    return text.compare(0, kStart.size(), kStart) == 0 ? text.substr(kStart.size()) : text;
}

std::string memoryRows(const Inspection& inspection) {
    std::string text;
    std::string line;
    bool above = false;
    for (std::size_t i = 0; i < inspection.memory.size(); ++i) {
        const MethodMemory& entry = inspection.memory[i];
        std::string cell = entry.name;
        cell.resize(12, ' ');
        const std::string size = memoryText(entry.bytes) + (entry.fits ? " " : "*");
        line += cell + std::string(8 - std::min<std::size_t>(8, size.size()), ' ') + size;
        above = above || !entry.fits;
        if (i % kMethodColumns + 1 == kMethodColumns || i + 1 == inspection.memory.size()) {
            line.erase(line.find_last_not_of(' ') + 1);
            std::string head = text.empty() ? "  memory" : "";
            head.resize(kColumn, ' ');
            text += head + line + "\n";
            line.clear();
        } else {
            line += "  ";
        }
    }
    if (above) {
        text += row("", "* above the " + memoryText(*inspection.limit) +
                            " that a run may take; --max-side makes it fit");
    }
    return text;
}

}  // namespace

std::string inspectionText(const Inspection& inspection) {
    const PictureHeader& header = inspection.header;
    std::string text = printable(inspection.path) + "\n" + row("size", sizeRow(header)) +
                       row("format", formatRow(header)) +
                       row("profile", header.profile.empty() ? "none; taken as sRGB"
                                                             : printable(header.profile)) +
                       row("orientation", orientationRow(header));
    if (header.dotsPerInch > 0.0) {
        text += row("resolution", oneDecimal(header.dotsPerInch) + " dots per inch");
    }
    if (!header.camera.empty()) {
        text += row("camera", printable(header.camera));
    }
    if (!header.taken.empty()) {
        text += row("taken", printable(header.taken));
    }
    text += row("metadata", metadataRow(header));
    if (!inspection.choice) {
        text += row("noise", "not measured: the picture needs more memory than a run may take");
    } else {
        text += row("noise", noiseRow(inspection.choice->noise));
        // In one line whatever its length, so that it can be copied.
        text += inspection.suggestion.empty()
                    ? row("suggested", "nothing: that little noise may well be texture")
                    : "  suggested   " + printable(inspection.suggestion) + "\n";
    }
    return text + memoryRows(inspection);
}

}  // namespace orv::cli
