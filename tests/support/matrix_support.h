#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/storage/full_matrix.h"

namespace orv::test {

/// Repeatable floats from -1 to 1.
class FloatSource {
  public:
    explicit FloatSource(std::uint32_t seed) : state_(seed * 2654435761u + 1u) {}

    float next() {
        state_ = state_ * 1664525u + 1013904223u;
        return static_cast<float>(state_ >> 8) / 8388608.0f - 1.0f;
    }

  private:
    std::uint32_t state_;
};

/// n repeatable elements from -1 to 1.
inline RealVector randomVector(int n, std::uint32_t seed) {
    FloatSource source(seed);
    RealVector v(n);
    for (int i = 0; i < n; ++i) {
        v[i] = source.next();
    }
    return v;
}

/// A vector of the given elements.
inline RealVector vectorOf(std::initializer_list<float> elements) {
    RealVector v(static_cast<int>(elements.size()));
    int i = 0;
    for (const float element : elements) {
        v[i++] = element;
    }
    return v;
}

/// The elements as a standard vector, for comparisons with EXPECT_EQ.
inline std::vector<float> elementsOf(const RealVector& v) {
    return {v.data(), v.data() + v.size()};
}

/// Random elements in the whole pattern of A, its diagonal raised by `shift`.
inline void randomise(Matrix& A, std::uint32_t seed, float shift) {
    FloatSource source(seed);
    for (int j = 0; j < A.Rows(); ++j) {
        for (int i = 0; i < A.Cols(); ++i) {
            A.Set(i, j, source.next() + (i == j ? shift : 0.0f));
        }
    }
}

/// The same elements in a matrix that has nothing but the defaults of Matrix.
class PlainMatrix : public Matrix {
  public:
    explicit PlainMatrix(int n) : Matrix(n), elements_(static_cast<std::size_t>(n * n)) {}
    explicit PlainMatrix(const Matrix& other) : PlainMatrix(other.Rows()) {
        for (int j = 0; j < n_; ++j) {
            for (int i = 0; i < n_; ++i) {
                PlainMatrix::Set(i, j, other.Get(i, j));
            }
        }
    }
    PlainMatrix(const PlainMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override {
        return std::make_unique<PlainMatrix>(*this);
    }
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix>) const override {
        return nullptr;
    }
    void Set(int i, int j, float value) override {
        elements_[static_cast<std::size_t>(j * n_ + i)] = value;
    }
    float Get(int i, int j) const override {
        return elements_[static_cast<std::size_t>(j * n_ + i)];
    }
    void Set1(int i, int j, float value) override { Set(i - 1, j - 1, value); }
    float Get1(int i, int j) const override { return Get(i - 1, j - 1); }

  private:
    std::vector<float> elements_;
};

/// A symmetric positive definite matrix of small integers.
inline PlainMatrix spdMatrix(int n) {
    PlainMatrix A(n);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            A.Set(i, j, i == j ? 4.0f : 1.0f / static_cast<float>(1 + std::abs(i - j)));
        }
    }
    return A;
}

/// A x in double, straight from Get.
inline std::vector<double> denseProduct(const Matrix& A, const RealVector& x, bool transposed) {
    std::vector<double> y(static_cast<std::size_t>(A.Rows()));
    for (int j = 0; j < A.Rows(); ++j) {
        for (int i = 0; i < A.Cols(); ++i) {
            y[static_cast<std::size_t>(j)] +=
                double{transposed ? A.Get(j, i) : A.Get(i, j)} * double{x[i]};
        }
    }
    return y;
}

/// Each element within `tolerance` of the expected one.
inline void expectNear(const RealVector& actual, const std::vector<double>& expected,
                       double tolerance) {
    ASSERT_EQ(static_cast<std::size_t>(actual.size()), expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        EXPECT_NEAR(actual[i], expected[static_cast<std::size_t>(i)], tolerance) << "at " << i;
    }
}

/// The same bits in every element.
inline void expectSameBits(const RealVector& actual, const RealVector& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    EXPECT_EQ(std::memcmp(actual.data(), expected.data(),
                          static_cast<std::size_t>(actual.size()) * sizeof(float)),
              0);
}

/// Every element of A equal to that of B; zeros may differ in sign.
inline void expectSameElements(const Matrix& A, const Matrix& B) {
    ASSERT_EQ(A.Rows(), B.Rows());
    for (int j = 0; j < A.Rows(); ++j) {
        for (int i = 0; i < A.Cols(); ++i) {
            EXPECT_EQ(A.Get(i, j), B.Get(i, j)) << "at column " << i << ", row " << j;
        }
    }
}

/// What `print` writes to the standard output.
inline std::string standardOutputOf(const std::function<void()>& print) {
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    print();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

/// What `print` writes to a file.
inline std::string fileOutputOf(const std::function<void(std::FILE*)>& print) {
    std::FILE* file = std::tmpfile();
    if (file == nullptr) {
        return "no temporary file";
    }
    print(file);
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text.push_back(static_cast<char>(c));
    }
    std::fclose(file);
    return text;
}

}  // namespace orv::test
