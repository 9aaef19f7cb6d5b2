#include "platform.h"

#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <sys/stat.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>

namespace golden {

namespace {

struct Work {
    void (*run)(void*);
    void* data;
};

DWORD WINAPI runWork(LPVOID argument) {
    const Work& work = *static_cast<const Work*>(argument);
    work.run(work.data);
    return 0;
}

int openNameless() {
    char folder[MAX_PATH + 1] = "";
    char name[MAX_PATH + 1] = "";
    if (GetTempPathA(MAX_PATH, folder) == 0 || GetTempFileNameA(folder, "orv", 0, name) == 0) {
        return -1;
    }
    // Binary, since a copy of the descriptor writes line ends as this one does.
    return _open(name, _O_RDWR | _O_CREAT | _O_TRUNC | _O_BINARY | _O_TEMPORARY,
                 _S_IREAD | _S_IWRITE);
}

}  // namespace

void* loadLibrary(const char* path, std::string& error) {
    const HMODULE library = LoadLibraryA(path);
    if (library == nullptr) {
        error = std::string(path) + ": error " + std::to_string(GetLastError());
    }
    return reinterpret_cast<void*>(library);
}

void* findFunction(void* library, const char* name) {
    const FARPROC function = GetProcAddress(static_cast<HMODULE>(library), name);
    void* address = nullptr;
    static_assert(sizeof address == sizeof function, "an address holds a function");
    std::memcpy(&address, &function, sizeof address);
    return address;
}

bool runOnNewThread(void (*work)(void*), void* data) {
    Work both{work, data};
    const HANDLE thread = CreateThread(nullptr, 0, runWork, &both, 0, nullptr);
    if (thread == nullptr) {
        return false;
    }
    const bool ended = WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0;
    CloseHandle(thread);
    return ended;
}

void setVariable(const char* name, const char* value) {
    _putenv((std::string(name) + "=" + value).c_str());
}

void keepLineEndsOfOutput() {
    _setmode(1, _O_BINARY);
}

DescriptorCapture::DescriptorCapture(int descriptor)
    : descriptor_(descriptor), file_(openNameless()) {}

DescriptorCapture::~DescriptorCapture() {
    if (file_ >= 0) {
        _close(file_);
    }
}

void DescriptorCapture::begin() {
    if (_chsize(file_, 0) == 0 && _lseek(file_, 0, SEEK_SET) == 0) {
        kept_ = _dup(descriptor_);
        _dup2(file_, descriptor_);
    }
}

std::string DescriptorCapture::end() {
    if (kept_ < 0) {
        return "the output couldn't be caught";
    }
    _dup2(kept_, descriptor_);
    _close(kept_);
    kept_ = -1;
    std::string text;
    char block[4096];
    _lseek(file_, 0, SEEK_SET);
    for (int count = _read(file_, block, sizeof block); count > 0;
         count = _read(file_, block, sizeof block)) {
        text.append(block, static_cast<std::size_t>(count));
    }
    return text;
}

}  // namespace golden
