# Writes the presets as a C++ source, so that the tool needs no file beside it. A script of the
# build:
#   cmake -DORV_FOLDER=tools/orv/recipe/presets -DORV_OUTPUT=preset_list.cpp -P OrvPresets.cmake
#
# The order is that of the file names, which are the names of the presets.
file(GLOB files ${ORV_FOLDER}/*.json)
list(SORT files)
set(texts "")
set(entries "")
set(count 0)
foreach(file IN LISTS files)
    get_filename_component(stem ${file} NAME_WE)
    file(READ ${file} text)
    string(JSON name ERROR_VARIABLE problem GET "${text}" name)
    if(problem OR NOT name STREQUAL stem)
        message(FATAL_ERROR "${file}: its \"name\" is '${name}', the file says '${stem}'")
    endif()
    string(JSON description ERROR_VARIABLE problem GET "${text}" description)
    if(problem)
        message(FATAL_ERROR "${file}: has no \"description\"")
    endif()
    string(APPEND texts "constexpr char kText${count}[] = R\"json(${text})json\";\n\n")
    string(APPEND entries
        "    Preset{\"${name}\", R\"json(${description})json\",\n"
        "           {kText${count}, sizeof(kText${count}) - 1}},\n")
    math(EXPR count "${count} + 1")
endforeach()

file(CONFIGURE OUTPUT ${ORV_OUTPUT} @ONLY CONTENT [[
// Made by the build from the presets.
#include <array>

#include "recipe/presets.h"

namespace orv::cli {

namespace {

@texts@constexpr std::array<Preset, @count@> kPresets{
@entries@};

}  // namespace

std::span<const Preset> presets() {
    return kPresets;
}

}  // namespace orv::cli
]])
