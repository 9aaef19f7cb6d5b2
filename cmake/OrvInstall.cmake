# What `cmake --install` puts where, by components: `runtime` is the shared library, `development`
# what a host is compiled with, `tool` the command line, whose rules stand in tools/orv.
#
# Nothing installed names a folder of this machine: the CMake package and orv.pc find the prefix
# from where they lie, so that a tree may be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(orv_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/orv)
install(TARGETS orv EXPORT orv-targets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/orv/orv.h include/orv/orv_constants.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orv COMPONENT development)

# The soname is that of the interface, which a new minor version only adds to.
configure_package_config_file(cmake/orv-config.cmake.in ${PROJECT_BINARY_DIR}/orv-config.cmake
    INSTALL_DESTINATION ${orv_package_folder}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orv-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT orv-targets NAMESPACE orv:: DESTINATION ${orv_package_folder}
    COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/orv-config.cmake ${PROJECT_BINARY_DIR}/orv-config-version.cmake
    DESTINATION ${orv_package_folder} COMPONENT development)

# orv_from_prefix(<out> <folder>): a folder of GNUInstallDirs as orv.pc names it.
function(orv_from_prefix out folder)
    if(IS_ABSOLUTE "${folder}")
        set(${out} "${folder}" PARENT_SCOPE)
    else()
        set(${out} "\${prefix}/${folder}" PARENT_SCOPE)
    endif()
endfunction()

set(orv_pc_prefix ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(orv_pc_prefix "\${pcfiledir}/${up}")
endif()
orv_from_prefix(orv_pc_libdir "${CMAKE_INSTALL_LIBDIR}")
orv_from_prefix(orv_pc_includedir "${CMAKE_INSTALL_INCLUDEDIR}")
configure_file(cmake/orv.pc.in ${PROJECT_BINARY_DIR}/orv.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orv.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
