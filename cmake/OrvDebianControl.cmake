# Run by CPack on the packages it has made: writes them anew with what this CPack can't put into
# their control files. The field Multi-Arch comes in, and the size without what symbolic links
# point at. The scripts that call ldconfig go, as the trigger does that work. Times are those of
# the change log, so that two builds are equal.

# orv_output(<out> <command>...): the command's standard output, without the end of its line.
function(orv_output out)
    execute_process(COMMAND ${ARGN}
        OUTPUT_VARIABLE text OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

# orv_installed_size(<out> <folder>): KiB on disk as Debian counts them, files rounded up and
# everything else 1.
function(orv_installed_size out folder)
    set(sum 0)
    file(GLOB_RECURSE paths LIST_DIRECTORIES true ${folder}/*)
    list(FILTER paths EXCLUDE REGEX "^${folder}/DEBIAN(/|$)")
    foreach(path IN LISTS paths)
        set(size 1024)
        if(NOT IS_SYMLINK ${path} AND NOT IS_DIRECTORY ${path})
            file(SIZE ${path} size)
        endif()
        math(EXPR sum "${sum} + (${size} + 1023) / 1024")
    endforeach()
    set(${out} ${sum} PARENT_SCOPE)
endfunction()

# orv_field(<variable> <field> <value>): sets a field of the control file that a variable holds.
function(orv_field variable field value)
    string(REGEX REPLACE "\n${field}:[^\n]*" "" text "\n${${variable}}")
    string(REGEX REPLACE "\nVersion:[^\n]*" "\\0\n${field}: ${value}" text "${text}")
    string(REGEX REPLACE "^\n" "" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    orv_output(epoch dpkg-parsechangelog --show-field Timestamp
        --file ${CPACK_ORV_SOURCE}/cmake/debian/changelog)
    set(ENV{SOURCE_DATE_EPOCH} ${epoch})
endif()
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    orv_output(name dpkg-deb --field ${package} Package)
    set(folder ${CPACK_TEMPORARY_DIRECTORY}/control-${name})
    file(REMOVE_RECURSE ${folder})
    orv_output(unused dpkg-deb --raw-extract ${package} ${folder})

    file(READ ${folder}/DEBIAN/control control)
    orv_installed_size(size ${folder})
    orv_field(control Installed-Size ${size})
    orv_field(control Multi-Arch ${CPACK_ORV_MULTI_ARCH_${name}})
    file(WRITE ${folder}/DEBIAN/control "${control}")
    file(REMOVE ${folder}/DEBIAN/postinst ${folder}/DEBIAN/postrm)

    orv_output(unused dpkg-deb --build --root-owner-group ${folder} ${package})
    file(REMOVE_RECURSE ${folder})
endforeach()
