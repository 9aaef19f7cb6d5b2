# The target "reference": pages of the two public headers, in the folder reference of the build. What
# Doxygen warns of fails it. Without Doxygen there is no such target.
find_program(ORV_DOXYGEN doxygen DOC "Doxygen, for the target reference")
mark_as_advanced(ORV_DOXYGEN)
if(NOT ORV_DOXYGEN)
    return()
endif()

set(ORV_REFERENCE_FOLDER ${CMAKE_CURRENT_BINARY_DIR}/reference)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(reference
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${ORV_REFERENCE_FOLDER}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${ORV_REFERENCE_FOLDER}
    COMMAND ${ORV_DOXYGEN} ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile
    COMMENT "The reference is in ${ORV_REFERENCE_FOLDER}/html/index.html"
    VERBATIM)
