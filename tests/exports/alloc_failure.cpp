#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

#include "base/text_output.h"
#include "orv/orv.h"
#include "support/handle.h"

namespace {

// Live blocks, and how the next allocations fare.
struct Heap {
    long live;
    long untilFailure;  // 0: off
    bool stayFailed;
    bool failed;
};

constinit Heap heap{0, 0, false, false};

void* allocate(std::size_t bytes, std::size_t alignment) {
    if (heap.untilFailure > 0 && --heap.untilFailure == 0) {
        heap.failed = true;
        heap.untilFailure = heap.stayFailed ? 1 : 0;
        throw std::bad_alloc();
    }
    const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
    void* block = std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++heap.live;
    return block;
}

void release(void* block) noexcept {
    if (block != nullptr) {
        --heap.live;
        std::free(block);
    }
}

constexpr std::size_t kDefaultAlignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

}  // namespace

void* operator new(std::size_t bytes) {
    return allocate(bytes, kDefaultAlignment);
}
void* operator new[](std::size_t bytes) {
    return allocate(bytes, kDefaultAlignment);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
    return allocate(bytes, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
    return allocate(bytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    release(block);
}

namespace orv {
namespace {

struct Outcome {
    void* image;
    bool failed;
    long leaked;
};

// Runs a call whose n-th allocation fails, and all later ones too when it is asked for.
template <typename Call>
Outcome failAt(long n, bool stayFailed, Call call) {
    const long before = heap.live;
    heap.untilFailure = n;
    heap.stayFailed = stayFailed;
    heap.failed = false;
    void* image = call();
    const bool failed = heap.failed;
    heap.untilFailure = 0;
    const long leaked = image == nullptr ? heap.live - before : 0;
    return {image, failed, leaked};
}

// Fails one allocation after the other until the call gets through; returns how many failed.
template <typename Call>
long failEach(bool stayFailed, Call call) {
    const long before = heap.live;
    for (long n = 1;; ++n) {
        const Outcome outcome = failAt(n, stayFailed, call);
        if (!outcome.failed) {
            EXPECT_NE(outcome.image, nullptr);
            DestroyORVImage(outcome.image);
            EXPECT_EQ(heap.live, before);
            return n - 1;
        }
        EXPECT_EQ(outcome.image, nullptr) << "allocation " << n;
        EXPECT_EQ(outcome.leaked, 0) << "allocation " << n;
        if (outcome.image != nullptr || outcome.leaked != 0) {
            DestroyORVImage(outcome.image);
            return -1;
        }
    }
}

constexpr const char* kSchemes[] = {"2DSemi", "2DImplicit", "LOD", "AFI", "ADI", "AOS", "AMOS"};

TEST(AllocationFailure, ConvertGivesNullAndLeaksNothing) {
    const BITMAPINFOHEADER block = test::bitmapHeader(4, 3);
    const BITMAPINFOHEADER padded = test::bitmapHeader(5, 3);
    const std::vector<unsigned char> pixels(3 * 16, 7);
    for (const bool stayFailed : {false, true}) {
        EXPECT_GT(failEach(stayFailed, [&] { return ConvertORVImage(&block, pixels.data()); }),
                  1);
        EXPECT_GT(failEach(stayFailed, [&] { return ConvertORVImage(&padded, pixels.data()); }),
                  1);
    }
}

TEST(AllocationFailure, RestorationGivesNullAndLeaksNothing) {
    const test::Handle image = test::photoHandle(5, 4, /*seed=*/1);
    for (const bool stayFailed : {false, true}) {
        for (const char* scheme : kSchemes) {
            SCOPED_TRACE(scheme);
            EXPECT_GT(failEach(stayFailed,
                               [&] {
                                   return ORVFastRestoration(image.get(), scheme, 0, 2, 2.5, 5,
                                                             0.8, 10.0, "PM", 1, 1);
                               }),
                      20);
        }
    }
}

TEST(AllocationFailure, DenoiserGivesNullAndLeaksNothing) {
    const test::Handle image = test::photoHandle(5, 4, /*seed=*/1);
    for (const char* scheme : kSchemes) {
        SCOPED_TRACE(scheme);
        EXPECT_GT(failEach(false,
                           [&] {
                               return ORVFastDenoiser(image.get(), scheme, 0, 1, 2.5, 5, 0.8,
                                                      10.0, 0.2, "VAR", 1, 1);
                           }),
                  20);
    }
}

TEST(AllocationFailure, FiltersGiveNullAndLeakNothing) {
    const test::Handle image = test::photoHandle(12, 11, /*seed=*/1);
    void* const source = image.get();
    const SilencedOutput silence;
    const struct {
        const char* name;
        void* (*run)(void* image);
    } filters[] = {
        {"blur", [](void* i) { return ORVIFVanVieltBlurringIirOp(i, 2.0); }},
        {"homomorphic", [](void* i) { return ORVIHomomorphicOp(i, 2.0, 8); }},
        {"retinex", [](void* i) { return ORVRetinex(i, 2.0, 0.1, 0.1, 3); }},
        {"shock", [](void* i) { return ORVIShockOp(i, 3, 2, 0.2); }},
        {"susan", [](void* i) { return ORVISusanRestoration(i, 2, 20.0, 3.0); }},
        {"deblur",
         [](void* i) { return ORVIFAosBarashOp(i, 2, 3, 0.1, 1.0, 1.0, 9.0, false, true); }},
        {"recolor", [](void* i) { return ORVISimpleColorTranfer(i, i); }},
        {"colorize", [](void* i) { return ORVIColorToGreyTranfertOp(i, i); }},
    };
    for (const auto& filter : filters) {
        SCOPED_TRACE(filter.name);
        for (const bool stayFailed : {false, true}) {
            EXPECT_GT(failEach(stayFailed, [&] { return filter.run(source); }), 3);
        }
    }
}

TEST(Refusal, LeavesNoObjectBehind) {
    const test::Handle image = test::photoHandle(5, 4, /*seed=*/1);
    const long before = heap.live;
    for (const int id : {-1, 42}) {
        EXPECT_EQ(ORVFastRestoration(image.get(), "AOS", id, 1, 2.5, 5, 0.8, 10.0, "PM", 1, 1),
                  nullptr);
        EXPECT_EQ(
            ORVFastDenoiser(image.get(), "AOS", id, 1, 2.5, 5, 0.8, 10.0, 0.2, "PM", 1, 1),
            nullptr);
    }

    EXPECT_EQ(heap.live, before);
}

}  // namespace
}  // namespace orv
