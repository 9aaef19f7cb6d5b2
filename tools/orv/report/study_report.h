#pragma once

#include <string>
#include <string_view>

#include "methods/arguments.h"
#include "studies/solver_study.h"

namespace orv::cli {

/// The part of a picture that was studied.
struct StudiedPicture {
    std::string name;  ///< of the file, without its folder
    int width = 0;
    int height = 0;
    int x = 0;  ///< of the part
    int y = 0;
    int usedWidth = 0;
    int usedHeight = 0;
};

/// All that a report tells.
struct StudyReport {
    std::string command;  ///< as the user gave it
    StudiedPicture picture;
    const Arguments& arguments;
    const SolverStudy& study;
};

/// The forms of a report.
enum class ReportFormat { Unknown, Html, Csv, Json };

/// The form that the ending of a file name asks for.
ReportFormat reportFormatOf(std::string_view path);

/// ".html .csv .json"
std::string reportExtensions();

/// The report as the text of a file.
std::string reportText(const StudyReport& report, ReportFormat format);

}  // namespace orv::cli
