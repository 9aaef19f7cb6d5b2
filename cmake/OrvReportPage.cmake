# Puts the page of the solver reports together and writes it as a C++ source, so that the tool
# needs no file beside it. A script of the build:
#   cmake -DORV_FOLDER=tools/orv/report -DORV_OUTPUT=report_page.cpp -P OrvReportPage.cmake
#
# Style and scripts stand in files of their own, where a page has a place for them.
file(READ ${ORV_FOLDER}/solver_report.html page)
foreach(part IN ITEMS
    "@ORV_REPORT_STYLE@|solver_report.css"
    "@ORV_REPORT_PLOT@|solver_report_plot.js"
    "@ORV_REPORT_SCRIPT@|solver_report.js")
    string(REGEX MATCH "^(.*)[|](.*)$" unused "${part}")
    set(mark ${CMAKE_MATCH_1})
    set(file ${ORV_FOLDER}/${CMAKE_MATCH_2})
    string(FIND "${page}" "${mark}" at)
    if(NOT at EQUAL -1)
        file(READ ${file} text)
        string(REPLACE "${mark}" "${text}" page "${page}")
    endif()
endforeach()

string(REGEX MATCHALL "@ORV_[A-Z_]*@" marks "${page}")
if(NOT marks STREQUAL "@ORV_REPORT_DATA@")
    message(FATAL_ERROR "solver_report.html needs one @ORV_REPORT_DATA@, and has: ${marks}")
endif()

string(HEX "${page}" bytes)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
# A line of the source for each line of the page.
string(REPLACE "0x0a," "0x0a,\n" bytes "${bytes}")
file(CONFIGURE OUTPUT ${ORV_OUTPUT} @ONLY CONTENT [[
// Made by the build from solver_report.html and its parts.
#include "report/report_page.h"

namespace orv::cli {

namespace {

constexpr unsigned char kPage[] = {
@bytes@
};

}  // namespace

std::string_view reportPage() {
    return {reinterpret_cast<const char*>(kPage), sizeof(kPage)};
}

}  // namespace orv::cli
]])
