#include "platform.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace golden {

namespace {

struct Work {
    void (*run)(void*);
    void* data;
};

void* runWork(void* argument) {
    const Work& work = *static_cast<const Work*>(argument);
    work.run(work.data);
    return nullptr;
}

int openNameless() {
    std::FILE* const file = std::tmpfile();
    if (file == nullptr) {
        return -1;
    }
    const int descriptor = dup(fileno(file));
    std::fclose(file);
    return descriptor;
}

}  // namespace

void* loadLibrary(const char* path, std::string& error) {
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        error = dlerror();
    }
    return library;
}

void* findFunction(void* library, const char* name) {
    return dlsym(library, name);
}

bool runOnNewThread(void (*work)(void*), void* data) {
    Work both{work, data};
    pthread_t thread;
    return pthread_create(&thread, nullptr, runWork, &both) == 0 &&
           pthread_join(thread, nullptr) == 0;
}

void setVariable(const char* name, const char* value) {
    setenv(name, value, 1);
}

void keepLineEndsOfOutput() {}

DescriptorCapture::DescriptorCapture(int descriptor)
    : descriptor_(descriptor), file_(openNameless()) {}

DescriptorCapture::~DescriptorCapture() {
    if (file_ >= 0) {
        close(file_);
    }
}

void DescriptorCapture::begin() {
    if (ftruncate(file_, 0) == 0 && lseek(file_, 0, SEEK_SET) == 0) {
        kept_ = dup(descriptor_);
        dup2(file_, descriptor_);
    }
}

std::string DescriptorCapture::end() {
    if (kept_ < 0) {
        return "the output couldn't be caught";
    }
    dup2(kept_, descriptor_);
    close(kept_);
    kept_ = -1;
    std::string text;
    char block[4096];
    lseek(file_, 0, SEEK_SET);
    for (ssize_t count = read(file_, block, sizeof block); count > 0;
         count = read(file_, block, sizeof block)) {
        text.append(block, static_cast<std::size_t>(count));
    }
    return text;
}

}  // namespace golden
