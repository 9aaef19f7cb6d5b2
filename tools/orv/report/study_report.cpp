#include "report/study_report.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "methods/json_text.h"
#include "methods/parameter.h"
#include "methods/solver_listing.h"
#include "methods/suggestion.h"
#include "report/report_page.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

const SolverEntry& entryOf(int id) {
    return solverListing()[static_cast<std::size_t>(id)];
}

void addPoint(JsonText& json, const StudyPoint& point) {
    json.memberNumber("seconds", point.seconds);
    json.memberNumber("residual", point.residual);
    json.memberNumber("differenceMax", point.differenceMax);
    json.memberNumber("differenceMean", point.differenceMean);
}

void addSolver(JsonText& json, const SolverRecordOfStudy& record) {
    const SolverEntry& entry = entryOf(record.id);
    const bool ran = record.status != SolverStatus::Skipped;
    json.beginObject();
    json.memberNumber("id", record.id);
    json.member("name", entry.name);
    json.member("group", entry.group);
    json.member("description", entry.description);
    json.member("note", entry.note);
    json.member("status", nameOf(record.status));
    json.member("reason", record.reason);
    json.memberNumber("iterations", record.iterations > 0 ? record.iterations : kNone);
    addPoint(json, ran ? record.last : StudyPoint{0, kNone, kNone, kNone, kNone});
    json.beginArray("curve");
    for (const StudyPoint& point : record.curve) {
        json.beginObject();
        json.memberNumber("limit", point.limit);
        addPoint(json, point);
        json.end();
    }
    json.end();
    json.end();
}

void addPicture(JsonText& json, const StudiedPicture& picture) {
    json.beginObject("picture");
    json.member("name", cleanUtf8(picture.name, "?"));
    json.memberNumber("width", picture.width);
    json.memberNumber("height", picture.height);
    json.memberNumber("x", picture.x);
    json.memberNumber("y", picture.y);
    json.memberNumber("usedWidth", picture.usedWidth);
    json.memberNumber("usedHeight", picture.usedHeight);
    json.end();
}

void addSystem(JsonText& json, const Arguments& arguments, const SolverStudy& study) {
    json.beginObject("system");
    json.member("scheme", arguments.choiceName("scheme"));
    json.memberNumber("tau", arguments.real("tau"));
    json.memberNumber("contrast", arguments.real("contrast"));
    json.memberNumber("sigma", arguments.real("sigma"));
    json.member("flow", arguments.choiceName("flow"));
    json.member("norm", arguments.choiceName("norm"));
    json.memberNumber("systems", study.systems);
    json.memberNumber("unknowns", study.unknowns);
    json.memberNumber("tolerance", kStudyTolerance);
    json.memberNumber("solverIterations", arguments.integer("solver-iterations"));
    json.memberNumber("startResidual", study.start.residual);
    json.memberNumber("startDifferenceMax", study.start.differenceMax);
    json.memberNumber("startDifferenceMean", study.start.differenceMean);
    json.memberNumber("exactResidual", study.exactResidual);
    json.memberNumber("roundedResidual", study.rounded.residual);
    json.end();
}

std::string jsonOf(const StudyReport& report) {
    JsonText json;
    json.beginObject();
    json.member("program", "orv " ORV_VERSION);
    json.member("command", cleanUtf8(report.command, "?"));
    addPicture(json, report.picture);
    addSystem(json, report.arguments, report.study);
    json.beginArray("solvers");
    for (const SolverRecordOfStudy& record : report.study.solvers) {
        addSolver(json, record);
    }
    json.end();
    json.end();
    return json.take();
}

std::string htmlOf(const StudyReport& report) {
    // No "</script>" of a file name may end the data.
    std::string data;
    for (const char c : jsonOf(report)) {
        if (c == '<') {
            data += "\\u003c";
        } else {
            data += c;
        }
    }
    constexpr std::string_view kMark = "@ORV_REPORT_DATA@";
    std::string page(reportPage());
    const std::size_t at = page.find(kMark);
    return at == page.npos ? page : page.replace(at, kMark.size(), data);
}

std::string field(double value) {
    return std::isfinite(value) ? numberText(value) : std::string();
}

std::string csvOf(const SolverStudy& study) {
    std::string text = "id,name,limit,status,seconds,residual,difference_max,difference_mean\n";
    for (const SolverRecordOfStudy& record : study.solvers) {
        const std::string head =
            std::to_string(record.id) + "," + entryOf(record.id).name + ",";
        const std::string status = std::string(",") + nameOf(record.status) + ",";
        if (record.curve.empty()) {
            text += head + status + ",,,\n";
        }
        for (const StudyPoint& point : record.curve) {
            text += head + std::to_string(point.limit) + status + field(point.seconds) + "," +
                    field(point.residual) + "," + field(point.differenceMax) + "," +
                    field(point.differenceMean) + "\n";
        }
    }
    return text;
}

}  // namespace

ReportFormat reportFormatOf(std::string_view path) {
    struct Entry {
        std::string_view ending;
        ReportFormat format;
    };
    constexpr std::array<Entry, 3> kEntries{{{".html", ReportFormat::Html},
                                             {".csv", ReportFormat::Csv},
                                             {".json", ReportFormat::Json}}};
    for (const Entry& entry : kEntries) {
        if (path.size() > entry.ending.size() &&
            sameWord(path.substr(path.size() - entry.ending.size()), entry.ending)) {
            return entry.format;
        }
    }
    return ReportFormat::Unknown;
}

std::string reportExtensions() {
    return ".html .csv .json";
}

std::string reportText(const StudyReport& report, ReportFormat format) {
    switch (format) {
        case ReportFormat::Html:
            return htmlOf(report);
        case ReportFormat::Csv:
            return csvOf(report.study);
        case ReportFormat::Json:
        case ReportFormat::Unknown:
            break;
    }
    return jsonOf(report);
}

}  // namespace orv::cli
