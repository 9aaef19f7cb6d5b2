#include "report/study_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

#include "methods/parameter.h"
#include "methods/solver_listing.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kIdWidth = 4;
constexpr std::size_t kStatusWidth = 12;
constexpr std::size_t kIterationsWidth = 10;
constexpr std::size_t kResidualWidth = 10;
constexpr std::size_t kDifferenceWidth = 16;
constexpr std::size_t kTimeWidth = 9;

std::string left(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string right(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string scientific(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2e", value);
    return text.data();
}

std::string timeText(double seconds) {
    std::array<char, 32> text{};
    if (seconds < 1.0) {
        const int digits = seconds < 0.001 ? 3 : seconds < 0.01 ? 1 : 0;
        std::snprintf(text.data(), text.size(), "%.*f ms", digits, seconds * 1e3);
    } else {
        std::snprintf(text.data(), text.size(), seconds < 100.0 ? "%.1f s" : "%.0f s", seconds);
    }
    return text.data();
}

/// Columns of numbers are set right, so that the gap stands before them.
std::string rowOf(const std::string& id, const std::string& name, std::size_t nameWidth,
                  const std::string& status, const std::array<std::string, 4>& numbers) {
    return left(id, kIdWidth) + left(name, nameWidth) + left(status, kStatusWidth) +
           right(numbers[0], kIterationsWidth) + right(numbers[1], kResidualWidth) +
           right(numbers[2], kDifferenceWidth) + right(numbers[3], kTimeWidth) + "\n";
}

std::string solverRow(const SolverRecordOfStudy& record, std::size_t nameWidth) {
    const std::string name = solverListing()[static_cast<std::size_t>(record.id)].name;
    const std::string id = std::to_string(record.id);
    const std::string status = nameOf(record.status);
    if (record.status == SolverStatus::Skipped || record.status == SolverStatus::BrokeDown) {
        const std::string head =
            left(id, kIdWidth) + left(name, nameWidth) + left(status, kStatusWidth);
        return (head + record.reason).substr(0, kWidth) + "\n";
    }
    const std::string iterations = record.direct ? "direct" : std::to_string(record.iterations);
    return rowOf(id, name, nameWidth, status,
                 {iterations, scientific(record.last.residual),
                  scientific(record.last.differenceMax), timeText(record.last.seconds)});
}

std::string sizeOf(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

std::string counted(int count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string head(const StudyReport& report) {
    const SolverStudy& study = report.study;
    return "First time step of " + std::string(report.arguments.choiceName("scheme")) +
           " with tau " + numberText(report.arguments.real("tau")) + ": " +
           counted(study.systems, "system") + ", " + counted(study.unknowns, "unknown") +
           "\n\n";
}

/// A row to compare the solvers with.
std::string measureRow(const std::string& name, std::size_t nameWidth,
                       const StudyPoint& point) {
    std::string row =
        rowOf("", name, nameWidth, "",
              {"", scientific(point.residual), scientific(point.differenceMax), ""});
    row.resize(row.find_last_not_of(" \n") + 1);
    return row + "\n";
}

}  // namespace

std::string studyTable(const StudyReport& report) {
    std::size_t nameWidth = 0;
    for (const SolverEntry& entry : solverListing()) {
        nameWidth = std::max(nameWidth, entry.name.size() + 2);
    }
    std::string text = head(report);
    text += rowOf("id", "name", nameWidth, "status",
                  {"iterations", "residual", "max difference", "time"});
    text += measureRow("(the picture)", nameWidth, report.study.start);
    text += measureRow("(exact as floats)", nameWidth, report.study.rounded);
    for (const SolverRecordOfStudy& record : report.study.solvers) {
        text += solverRow(record, nameWidth);
    }
    return text;
}

std::string studySummary(const StudyReport& report, double seconds, const std::string& path) {
    const StudiedPicture& picture = report.picture;
    int measured = 0;
    for (const SolverRecordOfStudy& record : report.study.solvers) {
        measured += record.status != SolverStatus::Skipped ? 1 : 0;
    }
    std::string text = counted(measured, "solver") + " on " +
                       sizeOf(picture.usedWidth, picture.usedHeight) + " pixels of " +
                       printable(picture.name) + " in " + durationText(seconds);
    return text + (path.empty() ? "; -o writes a report" : "; report: " + printable(path)) +
           "\n";
}

}  // namespace orv::cli
