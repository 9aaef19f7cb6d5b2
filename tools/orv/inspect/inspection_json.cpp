#include <cmath>
#include <limits>

#include "files/file_format.h"
#include "inspect/inspection.h"
#include "methods/json_text.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

namespace {

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

/// A text, or null for an empty one.
void textOrNull(JsonText& json, std::string_view name, const std::string& text) {
    if (text.empty()) {
        json.memberNumber(name, kNull);
    } else {
        json.member(name, cleanUtf8(text));
    }
}

/// All digits of a count of bytes.
void wholeNumber(JsonText& json, std::string_view name, double value) {
    json.memberDigits(name, std::to_string(static_cast<long long>(value)));
}

/// Three decimals are more than the measurement has.
double rounded(double value) {
    return std::round(1000.0 * value) / 1000.0;
}

void addHeader(JsonText& json, const PictureHeader& header) {
    const FormatEntry* const entry = formatEntry(header.format);
    textOrNull(json, "format", entry == nullptr ? std::string() : std::string(entry->name));
    wholeNumber(json, "bytes", header.fileBytes);
    json.memberNumber("width", header.width);
    json.memberNumber("height", header.height);
    json.memberNumber("bitsPerSample", 8.0 * static_cast<double>(bytesOf(header.depth)));
    json.memberBool("float", header.depth == SampleDepth::Float);
    json.memberNumber("channels", header.channels);
    json.memberBool("colour", header.colours == 3);
    json.memberBool("alpha", header.alpha);
    json.memberBool("palette", header.palette);
    json.memberBool("cmyk", header.cmyk);
    textOrNull(json, "profile", header.profile);
    json.memberNumber("orientation", header.orientation);
    json.memberNumber("dotsPerInch", header.dotsPerInch > 0.0 ? header.dotsPerInch : kNull);
    textOrNull(json, "camera", header.camera);
    textOrNull(json, "taken", header.taken);
    json.memberBool("exif", header.exif);
    json.memberBool("gps", header.gps);
    json.memberBool("xmp", header.xmp);
    json.memberBool("iptc", header.iptc);
}

void addNoise(JsonText& json, const Inspection& inspection) {
    if (!inspection.choice) {
        json.memberNumber("noise", kNull);
        json.memberNumber("strength", kNull);
        return;
    }
    const NoiseEstimate& noise = inspection.choice->noise;
    json.beginObject("noise");
    json.memberNumber("overall", rounded(noise.overall()));
    std::vector<double> channels;
    for (const double channel : noise.channels) {
        channels.push_back(rounded(channel));
    }
    json.memberNumbers("channels", channels);
    json.memberNumber("brightness", rounded(noise.brightness));
    json.memberNumber("chroma", noise.channels.size() == 3 ? rounded(noise.chroma) : kNull);
    json.end();
    json.memberNumber("strength", rounded(inspection.choice->strength));
}

void addMemory(JsonText& json, const Inspection& inspection) {
    json.beginObject("memory");
    if (inspection.limit) {
        wholeNumber(json, "limit", *inspection.limit);
    } else {
        json.memberNumber("limit", kNull);
    }
    json.beginArray("methods");
    for (const MethodMemory& entry : inspection.memory) {
        json.beginObject();
        json.member("name", entry.name);
        wholeNumber(json, "bytes", entry.bytes);
        json.memberBool("fits", entry.fits);
        json.end();
    }
    json.end();
    json.end();
}

}  // namespace

std::string inspectionsAsJson(const std::vector<Inspection>& inspections) {
    JsonText json;
    json.beginArray();
    for (const Inspection& inspection : inspections) {
        json.beginObject();
        json.member("file", cleanUtf8(inspection.path));
        textOrNull(json, "error", inspection.error);
        if (inspection.error.empty()) {
            addHeader(json, inspection.header);
            addNoise(json, inspection);
            textOrNull(json, "suggested", inspection.suggestion);
            addMemory(json, inspection);
        }
        json.end();
    }
    json.end();
    return json.take();
}

}  // namespace orv::cli
