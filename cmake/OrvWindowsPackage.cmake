# What CPack makes for Windows: a ZIP file with the library and what a host is built with.
#   cpack --config build/mingw64/CPackConfig.cmake -B build/mingw64
install(FILES src/exports/orv.def DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY examples/windows DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
    COMPONENT development)

math(EXPR orv_bits "8 * ${CMAKE_SIZEOF_VOID_P}")
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME orv)
set(CPACK_PACKAGE_FILE_NAME orv-${PROJECT_VERSION}-win${orv_bits})
# A folder of its own and no path of a Unix system in it.
set(CPACK_PACKAGING_INSTALL_PREFIX "")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
