#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "images/real_image.h"

namespace orv {

/// A list of RealImage levels of falling size; level 0 is the plane itself.
///
/// Owns:    the levels; a level that was taken or never made is null.
class RealImagePyramid {
  public:
    /// Level 0 is a clone of `source`. With `allocate` every further level is a zero plane of
    /// widthAt(i) x heightAt(i), without it null.
    ///
    /// Domain:  levels at least 1; less counts as 1.
    RealImagePyramid(const RealImage& source, int levels, double ratio, bool allocate);
    /// The same with `base` itself as level 0, for code that made the plane for the pyramid.
    RealImagePyramid(std::unique_ptr<RealImage> base, int levels, double ratio, bool allocate);
    RealImagePyramid(const RealImagePyramid&) = delete;
    RealImagePyramid& operator=(const RealImagePyramid&) = delete;
    ~RealImagePyramid() = default;

    /// Width of level 0.
    int width() const { return width_; }
    /// Height of level 0.
    int height() const { return height_; }
    /// Factor from one level to the next.
    double ratio() const { return ratio_; }
    /// Number of levels, level 0 among them.
    int levels() const { return levels_; }
    /// A byte that nothing reads.
    unsigned char flag() const { return flag_; }

    /// Width times ratio, i times, truncated after each: 100 by 0.5 is 50, 25, 12.
    int widthAt(int i) const;
    /// Height times ratio, i times, truncated after each.
    int heightAt(int i) const;

    /// Level i; may be null.
    RealImage* level(int i) { return planes_[static_cast<std::size_t>(i)].get(); }
    const RealImage* level(int i) const { return planes_[static_cast<std::size_t>(i)].get(); }
    /// Hands level i out; its place is null from then on.
    std::unique_ptr<RealImage> takeLevel(int i);
    /// Puts a plane in place i.
    void setLevel(int i, std::unique_ptr<RealImage> plane);

  private:
    unsigned char flag_ = 0;
    int width_;
    int height_;
    double ratio_;
    int levels_;
    std::vector<std::unique_ptr<RealImage>> planes_;
};

}  // namespace orv
