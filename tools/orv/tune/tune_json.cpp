#include <cmath>
#include <limits>

#include "methods/json_text.h"
#include "terminal/utf8_text.h"
#include "tune/tune_sheet.h"

namespace orv::cli {

namespace {

double rounded(double value) {
    return std::round(1000.0 * value) / 1000.0;
}

void addPlace(JsonText& json, std::string_view name, const CropPlace& place) {
    json.beginObject(name);
    json.memberNumber("x", place.x);
    json.memberNumber("y", place.y);
    json.memberNumber("width", place.width);
    json.memberNumber("height", place.height);
    json.end();
}

void addCell(JsonText& json, const TuneSheet& sheet, const TuneCell& cell) {
    constexpr double kNull = std::numeric_limits<double>::quiet_NaN();
    const bool done = cell.error.empty();
    json.beginObject();
    json.beginObject("values");
    for (std::size_t i = 0; i < sheet.axes.size(); ++i) {
        json.member(sheet.axes[i].name, cell.values[i]);
    }
    json.end();
    json.member("command", cleanUtf8(cell.command));
    json.memberNumber("noise", done ? rounded(cell.noise) : kNull);
    // Equal pictures have no finite one.
    json.memberNumber("psnr", done ? rounded(cell.psnr) : kNull);
    json.memberBool("unchanged", done && std::isinf(cell.psnr));
    if (!done) {
        json.member("error", cleanUtf8(cell.error));
    }
    json.end();
}

}  // namespace

std::string tuneAsJson(const TuneSheet& sheet, const std::string& output) {
    JsonText json;
    json.beginObject();
    json.member("verb", sheet.verb);
    json.member("input", cleanUtf8(sheet.input));
    json.member("output", cleanUtf8(output));
    json.memberNumber("width", sheet.width);
    json.memberNumber("height", sheet.height);
    addPlace(json, "crop", sheet.crop);
    addPlace(json, "worked", sheet.worked);
    json.beginObject("fixed");
    for (const auto& [name, value] : sheet.fixed) {
        json.member(name, value);
    }
    json.end();
    json.memberNumber("noise", rounded(sheet.noise));
    json.beginArray("cells");
    for (const TuneCell& cell : sheet.cells) {
        addCell(json, sheet, cell);
    }
    json.end();
    json.end();
    return json.take();
}

}  // namespace orv::cli
