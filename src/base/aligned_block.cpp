#include "base/aligned_block.h"

#include <new>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace orv {

namespace {

constexpr std::size_t kLargeBlock = std::size_t{4} << 20;
constexpr std::size_t kHugePage = std::size_t{2} << 20;

// Many systems give huge pages only where they are asked for. With them a plane costs a few
// page faults in place of thousands, and a pass across its columns finds its addresses without
// a walk of the page tables. A system that refuses changes nothing.
void askForHugePages(void* data, std::size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (bytes >= kLargeBlock) {
        static_cast<void>(madvise(data, bytes, MADV_HUGEPAGE));
    }
#else
    static_cast<void>(data);
    static_cast<void>(bytes);
#endif
}

}  // namespace

AlignedBlock::AlignedBlock(std::size_t bytes, std::size_t alignment)
    : bytes_(bytes),
      alignment_(bytes >= kLargeBlock && alignment < kHugePage ? kHugePage : alignment) {
    data_ = ::operator new (bytes, std::align_val_t{alignment_});
    askForHugePages(data_, bytes);
}

AlignedBlock::~AlignedBlock() {
    release();
}

AlignedBlock::AlignedBlock(AlignedBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      bytes_(std::exchange(other.bytes_, 0)),
      alignment_(other.alignment_) {}

AlignedBlock& AlignedBlock::operator=(AlignedBlock&& other) noexcept {
    if (this != &other) {
        release();
        data_ = std::exchange(other.data_, nullptr);
        bytes_ = std::exchange(other.bytes_, 0);
        alignment_ = other.alignment_;
    }
    return *this;
}

void AlignedBlock::release() noexcept {
    if (data_ != nullptr) {
        ::operator delete (data_, std::align_val_t{alignment_});
    }
}

}  // namespace orv
