#pragma once

#include <vector>

namespace orv {

/// A list of row or column indices with a fixed capacity, as the pattern operations give it.
struct IndexList {
    /// An empty list for up to `room` indices.
    explicit IndexList(int room);
    /// Appends an index; does nothing when the list is full.
    void Append(int index);
    /// Empties the list.
    void Clear() { count = 0; }
    /// Whether no index fits any more.
    bool Full() const { return count >= capacity; }

    int count = 0;
    int capacity = 0;
    std::vector<int> items;
    int reserved = 0;  ///< Stays 0.
};

}  // namespace orv
