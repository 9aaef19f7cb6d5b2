// Where the updates of the vector kernels round, and in which order they add up.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

#include "algebra/kernels/vector_kernels.h"
#include "support/kernel_targets.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

/// The scalars of an update.
struct Scalars {
    float a;
    float b;
    float c;
};

/// The arrays of an update; v is what it changes.
struct Arrays {
    std::vector<float> v;
    std::vector<float> x;
    std::vector<float> y;
    std::vector<float> z;
};

/// One kernel and what it makes of an element.
struct Update {
    const char* name;
    std::function<void(const VectorKernels& kernels, const Scalars& s, Arrays& of)> run;
    std::function<float(const Scalars& s, float v, float x, float y, float z)> element;
};

int sizeOf(const Arrays& of) {
    return static_cast<int>(of.v.size());
}

// One product is float arithmetic, two and more are double arithmetic rounded once.
std::vector<Update> updates() {
    using Kernels = VectorKernels;
    return {
        {"divideScalar",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.divideScalar(of.v.data(), s.a, sizeOf(of));
         },
         [](const Scalars& s, float v, float, float, float) { return v / s.a; }},
        {"addScaled",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.addScaled(of.v.data(), s.a, of.x.data(), sizeOf(of));
         },
         [](const Scalars& s, float v, float x, float, float) { return v + s.a * x; }},
        {"scaleAdd",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.scaleAdd(of.v.data(), s.a, of.x.data(), sizeOf(of));
         },
         [](const Scalars& s, float v, float x, float, float) { return s.a * v + x; }},
        {"addScaled2",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.addScaled2(of.v.data(), s.a, of.x.data(), s.b, of.y.data(), sizeOf(of));
         },
         [](const Scalars& s, float v, float x, float y, float) {
             return static_cast<float>((double{v} + double{s.a} * double{x}) +
                                       double{s.b} * double{y});
         }},
        {"addScaled3",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.addScaled3(of.v.data(), s.a, of.x.data(), s.b, of.y.data(), s.c, of.z.data(),
                          sizeOf(of));
         },
         [](const Scalars& s, float v, float x, float y, float z) {
             return static_cast<float>(
                 ((double{v} + double{s.a} * double{x}) + double{s.b} * double{y}) +
                 double{s.c} * double{z});
         }},
        {"scaleAddScaled",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.scaleAddScaled(of.v.data(), s.a, s.b, of.x.data(), sizeOf(of));
         },
         [](const Scalars& s, float v, float x, float, float) {
             return static_cast<float>(double{s.a} * double{v} + double{s.b} * double{x});
         }},
        {"scaleAddScaled2",
         [](const Kernels& k, const Scalars& s, Arrays& of) {
             k.scaleAddScaled2(of.v.data(), s.a, s.b, of.x.data(), s.c, of.y.data(),
                               sizeOf(of));
         },
         [](const Scalars& s, float v, float x, float y, float) {
             return static_cast<float>((double{s.a} * double{v} + double{s.b} * double{x}) +
                                       double{s.c} * double{y});
         }},
    };
}

void expectPlainBits(const Update& update, const Scalars& scalars, const Arrays& given) {
    for (const KernelTarget target : test::availableTargets()) {
        SCOPED_TRACE(testing::Message() << update.name << ", " << nameOf(target));
        Arrays of = given;

        update.run(vectorKernels(target), scalars, of);

        for (std::size_t i = 0; i < given.v.size(); ++i) {
            const float expected =
                update.element(scalars, given.v[i], given.x[i], given.y[i], given.z[i]);
            EXPECT_EQ(std::memcmp(&of.v[i], &expected, sizeof(float)), 0)
                << "at " << i << " of " << given.v.size() << ": " << of.v[i] << " for "
                << expected;
        }
    }
}

std::vector<float> randomFloats(int n, unsigned seed) {
    return test::elementsOf(test::randomVector(n, seed));
}

TEST(VectorUpdateKernels, RoundOneProductTwiceAndMoreOnce) {
    for (const Update& update : updates()) {
        for (int n = 0; n <= 70; ++n) {
            expectPlainBits(update, {0.7F, -1.3F, 0.37F},
                            {randomFloats(n, 1U), randomFloats(n, 2U), randomFloats(n, 3U),
                             randomFloats(n, 4U)});
        }
    }
}

TEST(VectorUpdateKernels, AddTheirTermsFromLeftToRight) {
    // A term of 2^60 swallows one of 1, and what is left after -2^60 shows which came first.
    const float elements[] = {0x1p60F, -0x1p60F, 1.0F, 0.0F};
    Arrays all;
    for (const float v : elements) {
        for (const float x : elements) {
            for (const float y : elements) {
                for (const float z : elements) {
                    all.v.push_back(v);
                    all.x.push_back(x);
                    all.y.push_back(y);
                    all.z.push_back(z);
                }
            }
        }
    }
    for (const Update& update : updates()) {
        expectPlainBits(update, {1.0F, 1.0F, 1.0F}, all);
    }
}

}  // namespace
}  // namespace orv
