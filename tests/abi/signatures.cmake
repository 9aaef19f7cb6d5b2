# The recorded interface, liborv.abi, holds the sixteen functions with the types of all that they
# take and return. Release libraries carry no types, so the sources of the exports are compiled
# once more, with debug information and without the engine behind them. abidiff compares what
# they say with the record; the shared library itself answers for the names.
#
# A change that is meant is recorded by
#   cmake --build build/release --target orv_abi_record
# and read in the diff of liborv.abi. One that breaks hosts needs a new soname as well.
set(abi_record ${CMAKE_CURRENT_SOURCE_DIR}/liborv.abi)
set(abi_options --headers-dir ${PROJECT_SOURCE_DIR}/include --drop-private-types
    --exported-interfaces-only)
find_program(ORV_ABIDIFF abidiff)
find_program(ORV_ABIDW abidw)

set(abi_environment PYTHONDONTWRITEBYTECODE=1)
if(ORV_ABIDIFF AND ORV_ABIDW AND NOT ORV_SANITIZE)
    file(GLOB export_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/exports/*_exports.cpp)
    set(export_map ${PROJECT_SOURCE_DIR}/src/exports/orv.map)
    add_library(orv_signatures SHARED ${export_sources})
    target_include_directories(orv_signatures PRIVATE
        ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
    target_compile_options(orv_signatures PRIVATE -g -O0
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
    target_link_options(orv_signatures PRIVATE -Wl,--version-script=${export_map})
    set_target_properties(orv_signatures PROPERTIES
        OUTPUT_NAME orv
        SOVERSION 1
        LINK_DEPENDS ${export_map}
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/signatures)

    add_custom_target(orv_abi_record
        COMMAND ${ORV_ABIDW} ${abi_options} --no-corpus-path --no-comp-dir-path --no-show-locs
            --no-architecture --no-elf-needed --out-file ${abi_record}
            $<TARGET_FILE:orv_signatures>
        VERBATIM)
    list(APPEND abi_environment ORV_ABIDIFF=${ORV_ABIDIFF} ORV_ABI_RECORD=${abi_record}
        ORV_LIBRARY=$<TARGET_FILE:orv> ORV_SIGNATURES=$<TARGET_FILE:orv_signatures>
        ORV_CXX=${CMAKE_CXX_COMPILER} ORV_SOURCE=${PROJECT_SOURCE_DIR})
endif()

add_test(NAME abi.signatures_are_those_recorded
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/signatures_test.py -v)
set_tests_properties(abi.signatures_are_those_recorded PROPERTIES
    ENVIRONMENT "${abi_environment}" SKIP_RETURN_CODE 77)
list(APPEND abi_tests abi.signatures_are_those_recorded)
