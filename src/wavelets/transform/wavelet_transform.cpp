#include "wavelets/transform/wavelet_transform.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "base/aligned_block.h"
#include "base/text_output.h"
#include "wavelets/working_array.h"

namespace orv {

namespace {

/// How far the two filters reach beyond the ends of a line.
struct Reach {
    Reach(const WaveletFilter& low, const WaveletFilter& high)
        : left(std::max(low.offset, high.offset)),
          right(std::max(low.length - low.offset - 1, high.length - high.offset - 1)) {}

    int left;
    int right;
};

std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

AlignedBlock workingLine(Reach reach, int length, const char* message) {
    return acquireWorkingArray(sizeOf(reach.left) + sizeOf(reach.right) + sizeOf(length),
                               message);
}

int modulo(int i, int n) {
    const int rest = i % n;
    return rest < 0 ? rest + n : rest;
}

/// buffer[left + i] = line[i modulo n] for i from -left to n + right - 1.
void extendPeriodically(const double* line, int n, Reach reach, double* buffer) {
    for (int i = 0; i < reach.left; ++i) {
        buffer[i] = line[modulo(i - reach.left, n)];
    }
    double* inside = buffer + reach.left;
    std::memcpy(inside, line, sizeOf(n) * sizeof(double));
    for (int i = 0; i < reach.right; ++i) {
        inside[n + i] = line[i % n];
    }
}

/// Wraps the margins of a buffer whose inside of n samples is set.
void extendInside(double* inside, int n, Reach reach) {
    for (int i = -reach.left; i < 0; ++i) {
        inside[i] = inside[modulo(i, n)];
    }
    for (int i = 0; i < reach.right; ++i) {
        inside[n + i] = inside[i % n];
    }
}

double weightedSum(const double* samples, const WaveletFilter& filter) {
    double sum = 0.0;
    for (int k = 0; k < filter.length; ++k) {
        sum += samples[k] * filter.taps[k];
    }
    return sum;
}

/// inside[2t] = half[t], 0 at all other of the n positions; the margins wrap.
void upsample(const double* half, int n, Reach reach, double* inside) {
    std::fill_n(inside, n, 0.0);
    for (int t = 0; t < n / 2; ++t) {
        inside[2 * t] = half[t];
    }
    extendInside(inside, n, reach);
}

}  // namespace

int power2(int n) {
    if (n < 0) {
        printTextTo(stderr, "\npower2: negative argument! Returning 0\n");
        return 0;
    }
    return n < 31 ? 1 << n : INT_MAX;
}

int floorLog2(int n) {
    int r = -1;
    for (; n > 0; n /= 2) {
        ++r;
    }
    return r;
}

void FwtVector(const double* input, double* output, int length, int levels,
               const WaveletFilter& low, const WaveletFilter& high) {
    const Reach reach(low, high);
    const AlignedBlock block =
        workingLine(reach, length, "FwtVector: unable to malloc working vector");
    double* buffer = doublesOf(block);
    const double* samples = buffer + reach.left;
    std::memcpy(output, input, sizeOf(length) * sizeof(double));
    int n = length;
    for (int pass = 0; pass < levels && n > 0; ++pass) {
        extendPeriodically(output, n, reach, buffer);
        // quirk: odd-line-high
        for (int i = 0; i < (n + 1) / 2; ++i) {
            output[i] = weightedSum(samples + 2 * i - low.offset, low);
            output[n / 2 + i] = weightedSum(samples + 2 * i - high.offset, high);
        }
        n /= 2;
    }
}

void IwtVector(const double* input, double* output, int length, int levels,
               const WaveletFilter& low, const WaveletFilter& high) {
    const Reach reach(low, high);
    const char* failure = "IwtVector: unable to malloc working vector";
    const AlignedBlock lowBlock = workingLine(reach, length, failure);
    const AlignedBlock highBlock = workingLine(reach, length, failure);
    double* a = doublesOf(lowBlock) + reach.left;
    double* b = doublesOf(highBlock) + reach.left;
    const int parts = power2(levels - 1);
    if (parts < 1) {
        std::memcpy(output, input, sizeOf(length) * sizeof(double));
        return;
    }
    int m = length / parts;
    std::memcpy(output, input, sizeOf(m) * sizeof(double));
    for (int pass = 0; pass < levels && m > 0; ++pass) {
        upsample(output, m, reach, a);
        upsample(input + m / 2, m, reach, b);
        for (int i = 0; i < m; ++i) {
            output[i] =
                weightedSum(a + i - low.offset, low) + weightedSum(b + i - high.offset, high);
        }
        m *= 2;
    }
}

}  // namespace orv
