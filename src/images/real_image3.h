#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "images/real_image.h"

namespace orv {

class DiscreteImage;

/// The three RealImage planes of a colour image.
///
/// Owns:    the planes; a plane that was taken stays null until another is set.
class RealImage3 {
  public:
    /// Key of the constructor that makes no planes.
    class WithoutPlanes {
        explicit WithoutPlanes() = default;
        friend class RealImage3;
    };

    /// Three zero planes.
    RealImage3(int width, int height);
    /// From an image: of three channels, plane i is channel i + 1; of one channel, every plane
    /// is value(x, y); of any other count the planes stay zero.
    explicit RealImage3(const DiscreteImage& image);
    /// Sizes, flag, and clones of the planes.
    RealImage3(const RealImage3& other);
    RealImage3& operator=(const RealImage3&) = delete;
    ~RealImage3() = default;
    /// What withoutPlanes() calls.
    RealImage3(WithoutPlanes key, int width, int height);

    /// A picture whose planes are all null, for code that sets each of them.
    static std::unique_ptr<RealImage3> withoutPlanes(int width, int height);

    /// A new object by the copy constructor.
    std::unique_ptr<RealImage3> clone() const;

    /// Copies the samples when the sizes are equal; otherwise takes over the size and clones of
    /// the other's planes.
    void assign(const RealImage3& other);

    /// Samples in x.
    int width() const { return width_; }
    /// Samples in y.
    int height() const { return height_; }
    /// Plane 0, 1 or 2; it must be there.
    RealImage& plane(int i) { return *planes_[static_cast<std::size_t>(i)]; }
    const RealImage& plane(int i) const { return *planes_[static_cast<std::size_t>(i)]; }
    /// Hands plane i out; its place is null from then on.
    std::unique_ptr<RealImage> takePlane(int i);
    /// Puts a plane in place i.
    void setPlane(int i, std::unique_ptr<RealImage> plane);
    /// A byte that copies along and that nothing reads.
    unsigned char flag() const { return flag_; }
    /// Sets the byte of flag().
    void setFlag(unsigned char flag) { flag_ = flag; }
    /// 4 atan(1).
    double pi() const { return pi_; }

    /// RealImage::scale on each plane.
    void scaleAll(double value);
    /// RealImage::divide on each plane.
    void divideAll(double value);
    /// RealImage::add on each plane.
    void addAll(double value);

  private:
    unsigned char flag_ = 0;
    int width_;
    int height_;
    std::array<std::unique_ptr<RealImage>, 3> planes_;
    double pi_;
};

}  // namespace orv
