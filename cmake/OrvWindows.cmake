# Windows programs and orv.dll, as MinGW builds them.
enable_language(RC)

# The header is read by programs that need little of windows.h, and in C++ its min and max are in
# the way.
add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX)

# The runtime goes into every file, which then needs nothing but Windows. No time of the build and
# no address made from the file's path: two builds are equal byte for byte.
add_link_options(-static -Wl,--no-insert-timestamp -Wl,--disable-auto-image-base)

# Windows keeps the stack at 16 bytes, and some versions of GCC spill wider registers to it by moves
# that ask for 32 or 64. As unaligned ones they cost the same.
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-Wa,-muse-unaligned-vector-move>)

# orv_windows_library(<target> <def> <rc.in>): the names of the def file and no others, an import
# library, the version resource.
function(orv_windows_library target def resource)
    set(names ${CMAKE_CURRENT_SOURCE_DIR}/${def})
    set(made ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${resource} ${made} @ONLY)
    target_sources(${target} PRIVATE ${made} ${names})
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        IMPORT_PREFIX lib
        LINK_DEPENDS ${names})
endfunction()
