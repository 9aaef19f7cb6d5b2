#include "schemes/plane_operators/region_list.h"

#include <cstddef>

#include "images/discrete_image.h"

namespace orv {

int collectRegion(const DiscreteImage& mask, int key, int countSoFar, std::vector<int>& xs,
                  std::vector<int>& ys) {
    const int width = mask.width();
    const int height = mask.height();
    std::size_t room = static_cast<std::size_t>(countSoFar);
    for (int x = 1; x < width - 1; ++x) {
        for (int y = 1; y < height - 1; ++y) {
            room += mask.value(x, y) == key ? 1U : 0U;
        }
    }
    xs.assign(room, 0);
    ys.assign(room, 0);

    std::size_t hits = 0;
    for (int x = 1; x < width - 1; ++x) {
        for (int y = 1; y < height - 1; ++y) {
            if (mask.value(x, y) == key) {
                xs[hits] = x;
                ys[hits] = y;
                ++hits;
            }
        }
    }
    return static_cast<int>(hits);
}

}  // namespace orv
