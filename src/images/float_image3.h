#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "images/float_image.h"

namespace orv {

class DiscreteImage;

/// The three FloatImage planes of a colour image.
///
/// Owns:    the planes; a plane that was taken stays null until another is set.
class FloatImage3 {
  public:
    /// Key of the constructor that makes no planes.
    class WithoutPlanes {
        explicit WithoutPlanes() = default;
        friend class FloatImage3;
    };

    /// Three zero planes.
    FloatImage3(int width, int height);
    /// From an image: of three channels, plane i is channel i + 1; of one channel, every plane
    /// is value(x, y); of any other count the planes stay zero.
    explicit FloatImage3(const DiscreteImage& image);
    /// What withoutPlanes() calls.
    FloatImage3(WithoutPlanes key, int width, int height);
    /// Sizes, flag, and clones of the planes.
    FloatImage3(const FloatImage3& other);
    FloatImage3& operator=(const FloatImage3&) = delete;
    ~FloatImage3() = default;

    /// Three places for planes of this size, all null: for code that sets each of them.
    static std::unique_ptr<FloatImage3> withoutPlanes(int width, int height);

    /// A new object by the copy constructor.
    std::unique_ptr<FloatImage3> clone() const;

    /// Of equal sizes: FloatImage::assign plane by plane, which does nothing. Of another size:
    /// takes over the size and clones of the other's planes.
    ///
    /// Quirk:   float-assign
    void assign(const FloatImage3& other);

    /// Samples in x.
    int width() const { return width_; }
    /// Samples in y.
    int height() const { return height_; }
    /// Plane 0, 1 or 2; it must be there.
    FloatImage& plane(int i) { return *planes_[static_cast<std::size_t>(i)]; }
    const FloatImage& plane(int i) const { return *planes_[static_cast<std::size_t>(i)]; }
    /// Hands plane i out; its place is null from then on.
    std::unique_ptr<FloatImage> takePlane(int i);
    /// Puts a plane in place i.
    void setPlane(int i, std::unique_ptr<FloatImage> plane);
    /// A byte that copies along and that nothing reads.
    unsigned char flag() const { return flag_; }
    /// Sets the byte of flag().
    void setFlag(unsigned char flag) { flag_ = flag; }
    /// 4 atan(1), rounded to float.
    float pi() const { return pi_; }

  private:
    unsigned char flag_ = 0;
    int width_;
    int height_;
    std::array<std::unique_ptr<FloatImage>, 3> planes_;
    float pi_;
};

}  // namespace orv
