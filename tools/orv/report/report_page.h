#pragma once

#include <string_view>

namespace orv::cli {

/// The page of a report, solver_report.html as it stood at build time; the JSON text takes the
/// place of "@ORV_REPORT_DATA@".
std::string_view reportPage();

}  // namespace orv::cli
