# Kernel targets: one source, compiled once per instruction set, chosen at run time.

if(ORV_KERNELS STREQUAL "auto")
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
        set(ORV_KERNEL_TARGETS generic avx2 avx512)
    else()
        set(ORV_KERNEL_TARGETS generic)
    endif()
else()
    set(ORV_KERNEL_TARGETS ${ORV_KERNELS})
endif()

# Builds that aren't made for speed compile three times as fast without.
set(ORV_KERNEL_OPTIMIZATION -O3 CACHE STRING "How kernels are optimised beyond the build type")
set(ORV_KERNEL_FLAGS_generic ${ORV_KERNEL_OPTIMIZATION})
set(ORV_KERNEL_FLAGS_avx2 ${ORV_KERNEL_OPTIMIZATION} -mavx2)
set(ORV_KERNEL_FLAGS_avx512 ${ORV_KERNEL_OPTIMIZATION} -mavx512f -mavx512dq -mavx512bw -mavx512vl
    -mprefer-vector-width=512)

foreach(target IN LISTS ORV_KERNEL_TARGETS)
    string(TOUPPER ${target} upper)
    add_compile_definitions(ORV_HAVE_KERNELS_${upper}=1)
endforeach()

# Writes one small source per kernel target that includes the given *_target.cpp, with the flags
# of that target, and appends their names to the list `out`.
function(orv_kernel_sources out)
    set(sources)
    foreach(file IN LISTS ARGN)
        get_filename_component(stem ${file} NAME_WE)
        foreach(target IN LISTS ORV_KERNEL_TARGETS)
            set(generated ${CMAKE_CURRENT_BINARY_DIR}/kernels/${stem}_${target}.cpp)
            file(CONFIGURE OUTPUT ${generated} CONTENT
                "#define ORV_KERNEL_NAMESPACE ${target}_kernels\n#include \"${file}\"\n")
            set_source_files_properties(${generated} PROPERTIES
                COMPILE_OPTIONS "${ORV_KERNEL_FLAGS_${target}}")
            list(APPEND sources ${generated})
        endforeach()
    endforeach()
    set(${out} ${${out}} ${sources} PARENT_SCOPE)
endfunction()
