# The libraries that are headers alone serve every system. A build for another system takes those of
# the machine that builds: by links, since its compiler must not see the other headers there.
set(ORV_HEADER_LIBRARIES /usr/include CACHE PATH
    "Folder of CLI/, nlohmann/ and xxhash.h, for a build for another system")
set(links ${PROJECT_BINARY_DIR}/header_libraries)
file(MAKE_DIRECTORY ${links})
foreach(name IN ITEMS CLI nlohmann xxhash.h)
    if(EXISTS ${ORV_HEADER_LIBRARIES}/${name})
        file(CREATE_LINK ${ORV_HEADER_LIBRARIES}/${name} ${links}/${name} SYMBOLIC)
    endif()
endforeach()

# orv_header_library(<target> <header> <found>): a target for one of them, and the answer of
# find_package().
function(orv_header_library target header found)
    if(EXISTS ${links}/${header})
        add_library(${target} INTERFACE IMPORTED)
        target_include_directories(${target} SYSTEM INTERFACE ${links})
        set(${found} ON PARENT_SCOPE)
    endif()
endfunction()

orv_header_library(CLI11::CLI11 CLI/CLI.hpp CLI11_FOUND)
orv_header_library(nlohmann_json::nlohmann_json nlohmann/json.hpp nlohmann_json_FOUND)
if(EXISTS ${links}/xxhash.h)
    set(ORV_XXHASH_INCLUDE ${links} CACHE PATH "Folder of xxhash.h")
endif()
