#include "files/picture_source.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "system/console.h"
#include "system/file_system.h"

namespace orv::cli {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

/// Reads on until there are `most` bytes or the end is reached.
std::string readBytes(std::FILE* file, std::size_t most, std::vector<unsigned char>& bytes) {
    std::array<unsigned char, 65536> block{};
    while (bytes.size() < most) {
        const std::size_t wanted = std::min(block.size(), most - bytes.size());
        const std::size_t got = std::fread(block.data(), 1, wanted, file);
        bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<long>(got));
        if (got < wanted) {
            return std::ferror(file) != 0
                       ? "can't be read: " + std::string(std::strerror(errno))
                       : std::string();
        }
    }
    return {};
}

std::string readStream(std::FILE* file, PictureSource& source) {
    const auto most = static_cast<std::size_t>(kMostStreamBytes);
    std::string error = readBytes(file, most + 1, source.bytes);
    if (error.empty() && source.bytes.size() > most) {
        error =
            "holds more than the 4 GB that orv takes from a stream; store it in a file first";
    }
    if (error.empty() && source.bytes.empty()) {
        error = "is empty";
    }
    source.inMemory = true;
    return error.empty() ? error : source.name + ": " + error;
}

std::string readFile(const std::string& path, std::size_t most,
                     std::vector<unsigned char>& bytes) {
    const FilePointer file(openFile(path, "rb"));
    if (file == nullptr) {
        return "can't be read: " + std::string(std::strerror(errno));
    }
    return readBytes(file.get(), most, bytes);
}

}  // namespace

std::string openSource(const std::string& word, PictureSource& source) {
    source = {};
    if (word == "-") {
        source.name = "standard input";
        if (isTerminal(Stream::Input)) {
            return source.name +
                   ": is a terminal; pipe a picture into it, as in "
                   "'orv restore - < in.png > out.png', or name a file";
        }
        return readStream(stdin, source);
    }
    source.name = word;
    FileState state;
    if (!readState(word, state)) {
        return word + ": " +
               (errno == ENOENT ? "no such file"
                                : "can't be read: " + std::string(std::strerror(errno)));
    }
    if (state.kind == FileKind::Folder) {
        return word + ": is a folder, not a picture";
    }
    if (state.kind == FileKind::Pipe) {
        const FilePointer file(openFile(word, "rb"));
        return file == nullptr ? word + ": can't be read: " + std::strerror(errno)
                               : readStream(file.get(), source);
    }
    return state.kind == FileKind::Regular ? std::string() : word + ": is no regular file";
}

std::string readHead(const PictureSource& source, std::size_t most,
                     std::vector<unsigned char>& head) {
    head.clear();
    if (!source.inMemory) {
        return readFile(source.name, most, head);
    }
    const std::size_t size = std::min(most, source.bytes.size());
    head.assign(source.bytes.begin(), source.bytes.begin() + static_cast<long>(size));
    return {};
}

std::string readAll(const PictureSource& source, std::vector<unsigned char>& bytes) {
    return readHead(source, SIZE_MAX, bytes);
}

double sourceSize(const PictureSource& source) {
    return source.inMemory ? static_cast<double>(source.bytes.size()) : fileBytes(source.name);
}

}  // namespace orv::cli
