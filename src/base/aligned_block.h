#pragma once

#include <cstddef>

namespace orv {

/// Owned, uninitialised memory on a power-of-two boundary.
///
/// Blocks of 4 MiB and more start on a 2 MiB boundary, so that a system that gives huge pages
/// can do so.
///
/// Fails:   an allocation that fails throws std::bad_alloc; the exports turn it into null.
class AlignedBlock {
  public:
    /// No memory.
    AlignedBlock() = default;
    /// `bytes` bytes on a boundary of `alignment` bytes, a power of two.
    AlignedBlock(std::size_t bytes, std::size_t alignment);
    ~AlignedBlock();
    AlignedBlock(AlignedBlock&& other) noexcept;
    AlignedBlock& operator=(AlignedBlock&& other) noexcept;
    AlignedBlock(const AlignedBlock&) = delete;
    AlignedBlock& operator=(const AlignedBlock&) = delete;

    /// First byte; null for a block without memory.
    void* data() const { return data_; }
    /// Size that was asked for, in bytes.
    std::size_t bytes() const { return bytes_; }

  private:
    void release() noexcept;

    void* data_ = nullptr;
    std::size_t bytes_ = 0;
    std::size_t alignment_ = 1;
};

}  // namespace orv
