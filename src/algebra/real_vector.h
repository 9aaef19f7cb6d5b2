#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

namespace orv {

/// The vector of the linear algebra layer: single-precision elements, sums in double.
///
/// One block of size() + 1 floats backs the vector. Its first float is a spare of value 0, so
/// that the elements can be counted from 0 (`data`) and from 1 (`data1`) without arithmetic.
///
/// Updates with one product are float arithmetic, each operation rounded; updates with two or
/// more products are evaluated in double from left to right and rounded once when stored.
/// Updates and reductions run over this vector's size and compare no sizes.
class RealVector {
  public:
    /// n elements of value 0.
    explicit RealVector(int n);
    /// n elements of the given value.
    RealVector(int n, float value);
    /// Deep copy.
    RealVector(const RealVector& other);
    /// Takes the elements over and leaves `other` with size 0.
    RealVector(RealVector&& other) noexcept;
    ~RealVector() = default;
    /// Copies the elements; the block is replaced if the sizes differ.
    RealVector& operator=(const RealVector& other);
    /// Takes the elements over and leaves `other` with size 0.
    RealVector& operator=(RealVector&& other) noexcept;
    /// A new vector with the same elements.
    std::unique_ptr<RealVector> Clone() const;

    /// Number of elements.
    int size() const { return size_; }
    /// The elements, counted from 0.
    float* data() { return data_; }
    /// The elements, counted from 0.
    const float* data() const { return data_; }
    /// The elements, counted from 1; index 0 is the spare float, which is 0.
    float* data1() { return data1_; }
    /// The elements, counted from 1; index 0 is the spare float, which is 0.
    const float* data1() const { return data1_; }
    /// Element i, counted from 0.
    float& operator[](int i) { return data_[i]; }
    /// Element i, counted from 0.
    float operator[](int i) const { return data_[i]; }

    /// Sets every element to `value`.
    void Fill(float value);
    /// Sets `count` elements from index `start` on to `value`.
    void FillRange(int start, int count, float value);
    /// Copies the elements of `other`; does nothing if the sizes differ.
    void CopyFrom(const RealVector& other);
    /// this = a x; does nothing if the sizes differ.
    void SetScaled(float a, const RealVector& x);
    /// this = a - b.
    void SetDifference(const RealVector& a, const RealVector& b);
    /// Fills with r / 32767 (high - low) + low, r from runtimeRandom(), evaluated in double.
    void Randomize(float low, float high);

    /// Sum of the squares; 0 for size 0. Callers take the square root for the norm.
    double SumOfSquares() const;
    /// Sum of the products with `other`, over this vector's size.
    double Dot(const RealVector& other) const;
    /// Sum of the elements.
    double Sum() const;
    /// Smallest element. Domain: size of at least 1.
    double Min() const;
    /// Largest element. Domain: size of at least 1.
    double Max() const;
    /// Largest magnitude. Domain: size of at least 1.
    double MaxAbs() const;

    /// this + a, element by element.
    void AddScalar(float a);
    /// this - a, element by element.
    void SubtractScalar(float a);
    /// this a, element by element.
    void MultiplyScalar(float a);
    /// this / a, element by element.
    void DivideScalar(float a);
    /// this + x.
    void Add(const RealVector& x);
    /// this + a x.
    void AddScaled(float a, const RealVector& x);
    /// this + a x, and then the sum of the squares: `AddScaled` and `SumOfSquares` in one pass,
    /// with their bits.
    double AddScaledSumOfSquares(float a, const RealVector& x);
    /// this + a x + b y.
    void AddScaled2(float a, const RealVector& x, float b, const RealVector& y);
    /// this + a x + b y + c z.
    void AddScaled3(float a, const RealVector& x, float b, const RealVector& y, float c,
                    const RealVector& z);
    /// a this + x.
    void ScaleAdd(float a, const RealVector& x);
    /// a this + b x.
    void ScaleAddScaled(float a, float b, const RealVector& x);
    /// a this + b x + c y.
    void ScaleAddScaled2(float a, float b, const RealVector& x, float c, const RealVector& y);

    /// Writes "v(size): [", the elements with four decimals and "]" to the standard output.
    void Print() const;
    /// The same to a file, with three decimals.
    /// Quirk:   vector-file-decimals
    void PrintTo(std::FILE* file) const;

  private:
    void allocate(int n);

    int size_ = 0;
    float* data_ = nullptr;
    float* data1_ = nullptr;
    std::unique_ptr<float[]> storage_;
};

}  // namespace orv
