#pragma once

#include <memory>
#include <string>

#include "schemes/gradient_norms/gradient_norm.h"

namespace orv {

/// The six gradient norms by number: their names and their factory. Short-lived; a norm that
/// it makes outlives it.
class GradientNormList {
  public:
    /// Registers the names of the flavours, as many as `capacity` has room for.
    explicit GradientNormList(int capacity);

    /// The norm of a flavour from 0 to 5; null for any other.
    std::unique_ptr<GradientNorm> create(int flavour) const;

    /// Registered names.
    int count() const { return count_; }
    /// Room for names.
    int capacity() const { return capacity_; }
    /// The name of flavour `index`, 0 <= index < count().
    const char* name(int index) const {
        return names_[static_cast<std::size_t>(index)].c_str();
    }

  private:
    void add(const char* name);

    int count_ = 0;
    int capacity_;
    std::unique_ptr<std::string[]> names_;
};

}  // namespace orv
