#pragma once

#include <string>

#include "report/study_report.h"

namespace orv::cli {

/// The study as a table for a terminal of 80 columns, with what was measured above it.
std::string studyTable(const StudyReport& report);

/// The line below the table: what was measured, how long it took, where the report is.
std::string studySummary(const StudyReport& report, double seconds, const std::string& path);

}  // namespace orv::cli
