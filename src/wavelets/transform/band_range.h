#pragma once

namespace orv {

/// Positions begin to end - 1 of a periodic line; begin below 0 counts from the line's end.
struct BandRange {
    int begin;
    int end;

    /// Count of positions.
    int size() const { return end - begin; }
};

}  // namespace orv
