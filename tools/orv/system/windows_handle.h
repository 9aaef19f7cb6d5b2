#pragma once

#include <windows.h>

#include <utility>

namespace orv::cli {

/// Owns a handle of Windows.
class WindowsHandle {
  public:
    /// None.
    WindowsHandle() = default;
    /// Takes a handle over; INVALID_HANDLE_VALUE stands for none.
    explicit WindowsHandle(HANDLE handle)
        : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    /// Closes it.
    ~WindowsHandle() { close(); }
    WindowsHandle(WindowsHandle&& other) noexcept
        : handle_(std::exchange(other.handle_, nullptr)) {}
    WindowsHandle& operator=(WindowsHandle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }

    /// The handle, null for none.
    HANDLE get() const { return handle_; }
    /// Whether there is one.
    explicit operator bool() const { return handle_ != nullptr; }

    /// Gives it out of the hand.
    HANDLE release() { return std::exchange(handle_, nullptr); }

  private:
    void close() {
        if (handle_ != nullptr) {
            CloseHandle(std::exchange(handle_, nullptr));
        }
    }

    HANDLE handle_ = nullptr;
};

}  // namespace orv::cli
