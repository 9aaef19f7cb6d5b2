# Language level, warnings and floating-point rules, the same for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# Every float operation is rounded by itself: no fused multiply-add behind our back. errno and
# traps of mathematical functions are never looked at; giving them up changes no result.
add_compile_options(-ffp-contract=off -fno-math-errno -fno-trapping-math)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>)
if(ORV_WERROR)
    add_compile_options(-Werror)
endif()
# A loop that a compiler leaves as it is gives the same bits, only slower: no reason to fail.
add_compile_options($<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-pass-failed>)

find_program(ORV_CCACHE ccache)
if(ORV_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${ORV_CCACHE})
endif()
