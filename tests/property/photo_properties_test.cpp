#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "images/rgb_discrete_image.h"
#include "schemes/flows/diffusion_flow.h"
#include "support/handle.h"
#include "support/photo_crops.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

using Line = std::vector<double>;

// One line of a plane along x (at y = k) or along y (at x = k).
Line lineOf(const DensePlane& plane, bool alongX, int k) {
    Line line(static_cast<std::size_t>(alongX ? plane.w : plane.h));
    for (std::size_t i = 0; i < line.size(); ++i) {
        const int at = static_cast<int>(i);
        line[i] = alongX ? plane.at(at, k) : plane.at(k, at);
    }
    return line;
}

void storeLine(const Line& line, bool alongX, int k, DensePlane& plane) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        const int at = static_cast<int>(i);
        (alongX ? plane.at(at, k) : plane.at(k, at)) = line[i];
    }
}

// All lines of one direction: (I - t A)^-1 u, or (I + t A) u with `product`.
DensePlane lineByLine(const DensePlane& u, const DensePlane& g, bool alongX, double t,
                      bool product) {
    DensePlane result = u;
    const int lines = alongX ? u.h : u.w;
    for (int k = 0; k < lines; ++k) {
        DensePlane gLine(alongX ? u.w : u.h, 1);
        DensePlane uLine = gLine;
        gLine.values = lineOf(g, alongX, k);
        uLine.values = lineOf(u, alongX, k);
        const DenseMatrix A = denseOperator(gLine, true, false);
        const DensePlane done =
            product ? denseProduct(A, t, uLine) : denseSolution(A, t, uLine);
        storeLine(done.values, alongX, k, result);
    }
    return result;
}

// One step of a line scheme by dense elimination of every line in double.
DensePlane denseLineStep(Scheme scheme, const DensePlane& u, const DensePlane& g, double tau) {
    const double half = tau / 2.0;
    const int count = 1 + static_cast<int>(tau);
    const auto solve = [&](bool alongX, double t, const DensePlane& v) {
        return lineByLine(v, g, alongX, t, /*product=*/false);
    };
    const auto multiply = [&](bool alongX, DensePlane v) {
        for (int i = 0; i < count; ++i) {
            v = lineByLine(v, g, alongX, half / count, /*product=*/true);
        }
        return v;
    };
    const auto crankNicolson = [&](bool alongX, const DensePlane& v) {
        return solve(alongX, half, multiply(alongX, v));
    };
    switch (scheme) {
        case Scheme::Lod:
            return solve(false, tau, solve(true, tau, u));
        case Scheme::Afi:
            return meanOf(solve(false, tau, solve(true, tau, u)),
                          solve(true, tau, solve(false, tau, u)));
        case Scheme::Adi:
            return solve(false, half, multiply(true, solve(true, half, multiply(false, u))));
        case Scheme::Amos:
            return meanOf(crankNicolson(false, crankNicolson(true, u)),
                          crankNicolson(true, crankNicolson(false, u)));
        default:
            return meanOf(solve(true, 2.0 * tau, u), solve(false, 2.0 * tau, u));
    }
}

TEST(PhotoProperties, LineSchemesAgreeWithDenseSolvesOnPhotos) {
    for (const char* name : kPhotoCrops) {
        const PhotoCrop crop = photoCrop(name);
        ASSERT_GT(crop.width, 0) << name;
        const RgbDiscreteImage image(crop.width, crop.height, crop.bytes.data());
        const FloatImage plane(image, /*channel=*/2);
        for (const Scheme scheme : kLineSchemes) {
            SCOPED_TRACE(std::string(name) + " " + nameOf(scheme));
            DiffusionFlow flow(1.0, 10.0, 0, 0);

            const auto result = makeScheme(scheme, &flow, {.tau = 2.0})->apply(plane, nullptr);

            const DensePlane expected = denseLineStep(
                scheme, DensePlane(plane), DensePlane(*flow.diffusivityPlane()), 2.0);
            // Float solves of lines with a condition number near 10 keep five digits of 255.
            EXPECT_LT(largestDifference(*result, expected), 1e-3);
        }
    }
}

// Twelve uniform numbers a sample: Gaussian enough, and the same on every machine.
std::vector<unsigned char> withNoise(std::vector<unsigned char> bytes, double sigma) {
    std::uint32_t state = 1;
    for (unsigned char& byte : bytes) {
        double sum = -6.0;
        for (int i = 0; i < 12; ++i) {
            state = state * 1664525U + 1013904223U;
            sum += static_cast<double>(state >> 8U) / 16777216.0;
        }
        const double value = std::floor(byte + sigma * sum + 0.5);
        byte = static_cast<unsigned char>(std::min(255.0, std::max(0.0, value)));
    }
    return bytes;
}

double psnr(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b) {
    double squares = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double difference = static_cast<double>(a[i]) - b[i];
        squares += difference * difference;
    }
    return 10.0 * std::log10(255.0 * 255.0 * static_cast<double>(a.size()) / squares);
}

TEST(PhotoProperties, EveryLineSchemeTakesNoiseFromAPhotoThroughTheCFace) {
    for (const char* name : kPhotoCrops) {
        const PhotoCrop crop = photoCrop(name);
        ASSERT_GT(crop.width, 0) << name;
        const std::vector<unsigned char> noisy = withNoise(crop.bytes, 10.0);
        const Handle source = handleOf(noisy, crop.width, crop.height);
        const double before = psnr(noisy, crop.bytes);
        for (const char* scheme : {"LOD", "AFI", "AOS"}) {
            SCOPED_TRACE(std::string(name) + " " + scheme);

            const Handle result(
                ORVFastRestoration(source.get(), scheme, 0, 1, 1.0, 5, 0.7, 8.0, "PM", 0, 0));

            ASSERT_NE(result, nullptr);
            // One step alone; results are truncated, which costs some of the gain.
            EXPECT_GT(psnr(pixelsOf(result), crop.bytes), before + 1.0);
        }
    }
}

}  // namespace
}  // namespace orv::test
