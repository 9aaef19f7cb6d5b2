#include "algebra/index_list.h"

#include <cstddef>

namespace orv {

IndexList::IndexList(int room)
    : capacity(room), items(static_cast<std::size_t>(room > 0 ? room : 0)) {}

void IndexList::Append(int index) {
    if (Full()) {
        return;
    }
    items[static_cast<std::size_t>(count)] = index;
    ++count;
}

}  // namespace orv
