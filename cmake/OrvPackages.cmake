# What CPack makes: three Debian packages, one a component. The preset `package` builds them:
#   cmake --workflow --preset package
#
# CPack stages each component and writes its control file. What it lacks is added by two scripts:
# OrvDebianFiles.cmake before a package is packed, OrvDebianControl.cmake after.
set(orv_debian ${PROJECT_SOURCE_DIR}/cmake/debian)

# The version and its Debian revision are those of the newest entry of the change log. A revision
# that begins with 0 gives way to packages that Debian itself may make of the version.
file(STRINGS ${orv_debian}/changelog orv_entry LIMIT_COUNT 1)
string(REGEX MATCH "^orv \\(([^-]*)-([^)]*)\\)" orv_entry "${orv_entry}")
if(NOT CMAKE_MATCH_1 VERSION_EQUAL PROJECT_VERSION)
    message(FATAL_ERROR "cmake/debian/changelog needs an entry for version ${PROJECT_VERSION}: "
        "its newest is for ${CMAKE_MATCH_1}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_2})
set(orv_debian_version ${PROJECT_VERSION}-${CMAKE_MATCH_2})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orv)
# There is no address to write to; the name is what the field asks for.
set(CPACK_PACKAGE_CONTACT "The ORV developers <developers@orv.invalid>")
# Each package has a summary of its own, the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET orv_tool)
    list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE orv)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/OrvDebianFiles.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/OrvDebianControl.cmake)
# For the two scripts, which get variables of this prefix alone.
set(CPACK_ORV_SOURCE ${PROJECT_SOURCE_DIR})
set(CPACK_ORV_STRIP ${CMAKE_STRIP})
file(GLOB CPACK_ORV_EXAMPLES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/c/*.c
    ${PROJECT_SOURCE_DIR}/examples/cpp/*.cpp ${PROJECT_SOURCE_DIR}/examples/python/*.py)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liborv1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${orv_debian}/shlibs ${orv_debian}/symbols ${orv_debian}/triggers)
set(CPACK_ORV_MULTI_ARCH_liborv1 same)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"image restoration engine, shared library
ORV takes noise and blur out of photographs: nonlinear diffusion with seven
schemes and forty-two linear solvers, wavelet shrinkage, SUSAN smoothing,
deblurring, shock, homomorphic and Retinex filters, and transfer of colours.
Hosts hand over a 24-bit bitmap and read the result back.

This package has the shared library. It needs nothing but the C and C++
run-time libraries, starts no thread and reads no file.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborv-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "liborv1 (= ${orv_debian_version})")
set(CPACK_ORV_MULTI_ARCH_liborv-dev same)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"image restoration engine, files for development
ORV takes noise and blur out of photographs: nonlinear diffusion, wavelet
shrinkage, deblurring and further methods behind sixteen C functions that
work on 24-bit bitmaps.

This package has what a program in C or C++ is compiled with: the headers,
the CMake package orv with its target orv::orv, orv.pc for pkg-config, and
examples.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME orv)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_ORV_MULTI_ARCH_orv foreign)
set(CPACK_DEBIAN_TOOL_DESCRIPTION
"image restoration on the command line
The program orv takes noise out of photographs without being told how much
there is: it measures the noise, chooses the parameters and says which. It
also deblurs, sharpens, brightens what lies in the dark and transfers colours.

It reads and writes PNG, JPEG, TIFF, WebP, BMP and PPM with 8 or 16 bits and
keeps colour profiles and EXIF, works through folders with several processes
and resumes what was interrupted, compares results in tables and pages, and
writes recipes that can be replayed and verified.

It comes with a manual page and completions for bash, zsh and fish, and has
the engine inside: it does not need liborv1.")
include(CPack)
