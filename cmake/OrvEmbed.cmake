# Writes a C++ source that holds a file's bytes. As a script of the build:
#   cmake -DORV_FILE=page.html -DORV_OUTPUT=page.cpp -DORV_HEADER=page.h -DORV_FUNCTION=page
#         -P OrvEmbed.cmake
file(READ ${ORV_FILE} bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
# A line of the source for each line of the file.
string(REPLACE "0x0a," "0x0a,\n" bytes "${bytes}")
file(CONFIGURE OUTPUT ${ORV_OUTPUT} @ONLY CONTENT [[
// Made from a file by the build.
#include "@ORV_HEADER@"

namespace orv::cli {

namespace {

constexpr unsigned char kBytes[] = {
@bytes@
};

}  // namespace

std::string_view @ORV_FUNCTION@() {
    return {reinterpret_cast<const char*>(kBytes), sizeof(kBytes)};
}

}  // namespace orv::cli
]])
