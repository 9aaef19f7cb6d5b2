#pragma once

namespace orv {

/// What a SUSAN pass tells the host: one report at its head and, in colour, one a column.
///
///     pass i:   100 i / iterations
///     column x: 100 x / (iterations width) + 100 i / iterations
///
/// Every quotient is truncated. Values never leave the range of an int, since i stays below
/// iterations and x below width.
class SusanProgress {
  public:
    /// Reports the head of pass `pass`. `columns` is the width of a colour picture, 0 for grey.
    SusanProgress(int pass, int iterations, int columns);

    /// Reports the columns below `end` that weren't reported yet.
    ///
    /// A pass may walk the picture in any order, as it reads and writes different pictures; it
    /// calls this with the share of columns that matches its work.
    void columnsBelow(int end);

  private:
    int pass_;
    int iterations_;
    int columns_;
    int reported_ = 0;
};

}  // namespace orv
