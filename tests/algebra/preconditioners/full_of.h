#pragma once

#include "algebra/storage/full_matrix.h"

namespace orv::test {

/// Rows (a, b), (c, d).
inline FullMatrix fullOf(float a, float b, float c, float d) {
    FullMatrix A(2, 0.0F);
    A.Set(0, 0, a);
    A.Set(1, 0, b);
    A.Set(0, 1, c);
    A.Set(1, 1, d);
    return A;
}

}  // namespace orv::test
