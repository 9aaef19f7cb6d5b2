# Puts a page of the tool together and writes it as a C++ source, so that the tool needs no file
# beside it. A script of the build:
#   cmake -DORV_FOLDER=tools/orv/report -DORV_PAGE=solver_report.html
#         "-DORV_PARTS=REPORT_STYLE=solver_report.css,REPORT_SCRIPT=solver_report.js"
#         -DORV_PLACES=REPORT_DATA -DORV_HEADER=report/report_page.h -DORV_FUNCTION=reportPage
#         -DORV_OUTPUT=report_page.cpp -P OrvReportPage.cmake
#
# Style and scripts stand in files of their own, where the page has @ORV_REPORT_STYLE@ and so on.
# The places, in their order, are what is left for the program to fill.
file(READ ${ORV_FOLDER}/${ORV_PAGE} page)
string(REPLACE "," ";" parts "${ORV_PARTS}")
foreach(part IN LISTS parts)
    string(REGEX MATCH "^(.*)=(.*)$" unused "${part}")
    set(mark "@ORV_${CMAKE_MATCH_1}@")
    set(file ${ORV_FOLDER}/${CMAKE_MATCH_2})
    string(FIND "${page}" "${mark}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "${ORV_PAGE} has no ${mark}")
    endif()
    file(READ ${file} text)
    string(REPLACE "${mark}" "${text}" page "${page}")
endforeach()

string(REGEX MATCHALL "@ORV_[A-Z_]*@" marks "${page}")
string(REPLACE "," ";" places "${ORV_PLACES}")
list(TRANSFORM places PREPEND "@ORV_")
list(TRANSFORM places APPEND "@")
if(NOT marks STREQUAL places)
    message(FATAL_ERROR "${ORV_PAGE} needs ${places}, once each, and has: ${marks}")
endif()

string(HEX "${page}" bytes)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
# A line of the source for each line of the page.
string(REPLACE "0x0a," "0x0a,\n" bytes "${bytes}")
file(CONFIGURE OUTPUT ${ORV_OUTPUT} @ONLY CONTENT [[
// Made by the build from @ORV_PAGE@ and its parts.
#include "@ORV_HEADER@"

namespace orv::cli {

namespace {

constexpr unsigned char kPage[] = {
@bytes@
};

}  // namespace

std::string_view @ORV_FUNCTION@() {
    return {reinterpret_cast<const char*>(kPage), sizeof(kPage)};
}

}  // namespace orv::cli
]])
