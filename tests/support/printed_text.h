#pragma once

#include <cstdio>
#include <string>

namespace orv::test {

/// What `print` writes to the file that it is given.
template <class Print>
std::string printedTo(Print print) {
    std::FILE* const file = std::tmpfile();
    print(file);
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text.push_back(static_cast<char>(c));
    }
    std::fclose(file);
    return text;
}

}  // namespace orv::test
