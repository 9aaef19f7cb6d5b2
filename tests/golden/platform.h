#pragma once

#include <string>

// What the operating system is needed for: one file each for POSIX and for Windows.
namespace golden {

/// Loads a shared library for the rest of the process. Fails: null, and `error` says why.
void* loadLibrary(const char* path, std::string& error);

/// The address of a function of it. Fails: null.
void* findFunction(void* library, const char* name);

/// Runs `work(data)` on a new thread and waits for it. Fails: false without a thread.
bool runOnNewThread(void (*work)(void*), void* data);

/// Sets a variable of the environment, as libraries of this process see it.
void setVariable(const char* name, const char* value);

/// From now on the standard output takes bytes as they are.
void keepLineEndsOfOutput();

/// Catches what the process, its libraries included, writes to a descriptor: 1 or 2.
class DescriptorCapture {
  public:
    /// Opens a file without a name that lives as long as the object.
    explicit DescriptorCapture(int descriptor);
    ~DescriptorCapture();
    DescriptorCapture(const DescriptorCapture&) = delete;
    DescriptorCapture& operator=(const DescriptorCapture&) = delete;

    /// Whether the file could be made.
    bool works() const { return file_ >= 0; }

    /// From here to `end` output goes to the file. Buffered text of before has to be flushed.
    void begin();

    /// What was written since `begin`, line ends untouched. Buffered text has to be flushed.
    std::string end();

  private:
    int descriptor_;
    int file_;
    int kept_ = -1;
};

}  // namespace golden
