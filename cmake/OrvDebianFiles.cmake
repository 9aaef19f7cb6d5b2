# Run by CPack after the components are staged and before they are packed: gives each package what
# Debian asks of it and nobody else needs. Copyright, change log, compressed manual page, folder of
# zsh completions, stripped programs, the examples.
find_program(shlibdeps dpkg-shlibdeps)
if(NOT shlibdeps)
    # CPack would go on and make packages that ask for no library at all.
    message(FATAL_ERROR "dpkg-shlibdeps is missing, which finds what the packages need: "
        "apt install dpkg-dev file")
endif()
set(debian ${CPACK_ORV_SOURCE}/cmake/debian)
set(file_mode OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

# orv_gzip(<file>): as `gzip -9n`, so that two builds are equal.
function(orv_gzip file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# orv_copyright(<output> <notes>...): the licence of the project in Debian's machine-readable form
# and then the notes.
function(orv_copyright output)
    file(READ ${CPACK_ORV_SOURCE}/LICENSE license)
    string(REGEX REPLACE "^MIT License\n\n" "" license "${license}")
    string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)\n\n" unused "${license}")
    set(ORV_HOLDER "${CMAKE_MATCH_1}")
    string(REPLACE "${CMAKE_MATCH_0}" "" license "${license}")
    string(STRIP "${license}" license)
    string(REPLACE "\n\n" "\n.\n" license "${license}")
    string(REPLACE "\n" "\n " ORV_LICENSE " ${license}")
    set(ORV_NOTES "")
    foreach(notes IN LISTS ARGN)
        file(READ ${notes} text)
        string(APPEND ORV_NOTES "\n${text}")
    endforeach()
    configure_file(${debian}/copyright.in ${output} @ONLY FILE_PERMISSIONS ${file_mode})
endfunction()

file(GLOB packages ${CPACK_TEMPORARY_DIRECTORY}/*/usr)
foreach(usr IN LISTS packages)
    get_filename_component(component ${usr} DIRECTORY)
    get_filename_component(component ${component} NAME)
    string(TOUPPER ${component} upper)
    set(doc ${usr}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    file(MAKE_DIRECTORY ${doc})

    file(COPY ${debian}/changelog DESTINATION ${doc} FILE_PERMISSIONS ${file_mode})
    file(RENAME ${doc}/changelog ${doc}/changelog.Debian)
    orv_gzip(${doc}/changelog.Debian)
    set(notes)
    if(component STREQUAL "tool")
        set(notes ${debian}/copyright.tool)
    endif()
    orv_copyright(${doc}/copyright ${notes})

    if(component STREQUAL "development")
        file(COPY ${CPACK_ORV_EXAMPLES} DESTINATION ${doc}/examples FILE_PERMISSIONS ${file_mode})
    endif()

    # Debian's zsh looks for completions of packages here.
    if(EXISTS ${usr}/share/zsh/site-functions)
        file(RENAME ${usr}/share/zsh/site-functions ${usr}/share/zsh/vendor-completions)
    endif()
    file(GLOB pages ${usr}/share/man/man*/*)
    foreach(page IN LISTS pages)
        orv_gzip(${page})
    endforeach()

    file(GLOB_RECURSE programs ${usr}/bin/* ${usr}/lib/*.so.*)
    foreach(program IN LISTS programs)
        if(NOT IS_SYMLINK ${program})
            execute_process(COMMAND ${CPACK_ORV_STRIP} --strip-unneeded
                --remove-section=.comment --remove-section=.note ${program}
                COMMAND_ERROR_IS_FATAL ANY)
        endif()
    endforeach()
endforeach()
