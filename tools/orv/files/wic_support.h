#pragma once

#include <windows.h>
// After windows.h.
#include <wincodec.h>

#include <string>
#include <utility>

#include "files/file_format.h"

namespace orv::cli {

/// Owns an object of COM.
template <class Interface>
class ComPointer {
  public:
    ComPointer() = default;
    explicit ComPointer(Interface* object) : object_(object) {}
    ~ComPointer() {
        if (object_ != nullptr) {
            object_->Release();
        }
    }
    ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPointer& operator=(ComPointer&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Where a function leaves the object that it makes; the pointer must be empty.
    Interface** place() { return &object_; }
    /// The object, null for none.
    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    /// Whether there is one.
    explicit operator bool() const { return object_ != nullptr; }

  private:
    Interface* object_ = nullptr;
};

/// The factory of the Windows Imaging Component, started on the first call.
///
/// Fails:   null.
/// Owns:    the factory lives as long as the process.
IWICImagingFactory* wicFactory();

/// What to say where wicFactory() is null.
std::string wicMissing();

/// The name that the component has for a format that it codes for the tool, or null.
const GUID* containerOf(Format format);

/// "... (code 0x88982f50 of the Windows Imaging Component)"
std::string wicReason(const std::string& what, HRESULT code);

}  // namespace orv::cli
