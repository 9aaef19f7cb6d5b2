#pragma once

#include <cstddef>

namespace orv {

/// Up to `lanes` neighbouring columns of a plane, `stride` samples apart.
template <class Sample>
struct ColumnBlock {
    Sample* data;
    std::size_t stride;
    int columns;
    int length;  ///< samples of a column
};

}  // namespace orv
