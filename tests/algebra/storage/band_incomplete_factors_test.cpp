#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <string>

#include "algebra/storage/band_matrix.h"
#include "base/text_output.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::vectorOf;

// Rows (2, 0, 1), (0, 4, 0), (4, 0, 6), with the outer diagonals stored.
BandMatrix outer() {
    const int positions[] = {0, 2, 4};
    BandMatrix A(3, 3, positions);
    A.SetDiagonal(0, vectorOf({4}));
    A.SetDiagonal(2, vectorOf({2, 4, 6}));
    A.SetDiagonal(4, vectorOf({1}));
    return A;
}

TEST(Quirk, IncompleteLu0Prints) {
    std::unique_ptr<Matrix> F;

    const std::string text = test::standardOutputOf([&] { F = outer().IncompleteLU0(); });

    EXPECT_EQ(text,
              "row2: v(3): [ 0.0000  4.0000  0.0000 ]\n"
              "row2: v(3): [ 0.0000  4.0000  0.0000 ]\n"
              "row3: v(3): [ 4.0000  0.0000  6.0000 ]\n"
              "row3: v(3): [ 2.0000  0.0000  6.0000 ]\n"
              "row3: v(3): [ 2.0000  0.0000  4.0000 ]\n"
              "row3: v(3): [ 2.0000  0.0000  4.0000 ]\n");
    EXPECT_EQ(F->Get(0, 2), 2.0f);
    EXPECT_EQ(F->Get(2, 2), 4.0f);
}

TEST(BandMatrix, IncompleteLu0TracesAGainInItsRowAlone) {
    // Offsets -3, 0 and 2. Row 4 gains column 3 from row 1; row 5 stores a zero in column 2, which
    // is no change.
    const int positions[] = {1, 4, 6};
    BandMatrix A(5, 3, positions);
    A.SetDiagonal(1, vectorOf({4, 0}));
    A.SetDiagonal(4, vectorOf({4, 4, 4, 4, 4}));
    A.SetDiagonal(6, vectorOf({2, 2, 2}));

    const std::string text = test::standardOutputOf([&] { A.IncompleteLU0(); });

    EXPECT_EQ(text.substr(text.find("row4")),
              "row4: v(5): [ 4.0000  0.0000  0.0000  4.0000  0.0000 ]\n"
              "row4: v(5): [ 1.0000  0.0000  0.0000  4.0000  0.0000 ]\n"
              "row4: v(5): [ 1.0000  0.0000 -2.0000  4.0000  0.0000 ]\n"
              "row4: v(5): [ 1.0000  0.0000 -2.0000  4.0000  0.0000 ]\n"
              "row5: v(5): [ 0.0000  0.0000  0.0000  0.0000  4.0000 ]\n"
              "row5: v(5): [ 0.0000  0.0000  0.0000  0.0000  4.0000 ]\n");
}

TEST(BandMatrix, IncompleteLu0GivesTheSameFactorsInSilence) {
    const int positions[] = {2, 5, 6, 7, 10};
    BandMatrix A(7, 5, positions);
    test::randomise(A, 5, 6.0f);
    std::unique_ptr<Matrix> printed;
    std::unique_ptr<Matrix> silenced;

    const std::string trace = test::standardOutputOf([&] { printed = A.IncompleteLU0(); });
    const std::string nothing = test::standardOutputOf([&] {
        const SilencedOutput silence;
        silenced = A.IncompleteLU0();
    });

    EXPECT_FALSE(trace.empty());
    EXPECT_EQ(nothing, "");
    test::expectSameElements(*silenced, *printed);
}

// The five diagonals of a w x w plane.
BandMatrix plane(int w) {
    const int center = w * w - 1;
    const int positions[] = {center - w, center - 1, center, center + 1, center + w};
    BandMatrix A(w * w, 5, positions);
    for (const int position : positions) {
        A.diagonal(position)->Fill(position == center ? 5.0f : -1.0f);
    }
    return A;
}

// Seconds of processor time, the least of three turns.
double secondsOfIncompleteLu0(const BandMatrix& A) {
    const SilencedOutput silence;
    double least = 1e9;
    for (int turn = 0; turn < 3; ++turn) {
        const std::clock_t begin = std::clock();
        const auto F = A.IncompleteLU0();
        const std::clock_t end = std::clock();
        least = std::min(least, static_cast<double>(end - begin) / CLOCKS_PER_SEC);
    }
    return least;
}

TEST(BandMatrix, IncompleteLu0GrowsWithTheRowsAloneInSilence) {
    const double small = secondsOfIncompleteLu0(plane(64));
    const double large = secondsOfIncompleteLu0(plane(256));

    // 16 times the rows. A cost of order n squared would take 256 times as long; caches and
    // other programs leave the linear one far below half of that.
    EXPECT_LT(large, 100.0 * std::max(small, 1e-4));
    RecordProperty("seconds", std::to_string(large));
}

TEST(BandMatrix, IncompleteLu0OfATridiagonalIsExact) {
    const int positions[] = {2, 3, 4};
    BandMatrix A(4, 3, positions);
    test::randomise(A, 2, 4.0f);
    const SilencedOutput silence;

    test::expectSameElements(*A.IncompleteLU0(), *A.FactorLU());
}

TEST(BandMatrix, IncompleteLu0DropsFillIn) {
    // Offsets -2, -1, 0, 1, 2 of a 4 by 4 matrix with the inner pair left out beside row 0.
    const int positions[] = {1, 3, 4, 5};
    BandMatrix A(4, 4, positions);
    A.SetDiagonal(1, vectorOf({2, 2}));
    A.SetDiagonal(3, vectorOf({4, 4, 4, 4}));
    A.SetDiagonal(4, vectorOf({1, 1, 1}));
    A.SetDiagonal(5, vectorOf({2, 2}));
    const SilencedOutput silence;

    const auto F = A.IncompleteLU0();

    // Row 2: l = 2 / 4; column 1 would gain -0.5 but isn't stored; the diagonal loses 0.5 * 2.
    EXPECT_EQ(F->Get(0, 2), 0.5f);
    EXPECT_EQ(F->Get(1, 2), 0.0f);
    EXPECT_EQ(F->Get(2, 2), 3.0f);
    // Row 3: the gained position of row 2 was cleared again.
    EXPECT_EQ(F->Get(1, 3), 0.5f);
    EXPECT_EQ(F->Get(3, 3), 3.0f);
}

TEST(BandMatrix, IncompleteFactor3EliminatesAndDropsSmallElements) {
    const int positions[] = {2, 3, 4};
    BandMatrix A(4, 3, positions);
    A.SetDiagonal(2, vectorOf({2, 1, 1}));
    A.SetDiagonal(3, vectorOf({4, 4, 4, 4}));
    A.SetDiagonal(4, vectorOf({2, 0.25f, 2}));

    const auto F = A.IncompleteFactor3(0.3);

    EXPECT_EQ(F->Get(0, 1), 0.5f);
    EXPECT_EQ(F->Get(1, 1), 3.0f);
    // 0.25 beside the diagonal of row 1 is below the tolerance.
    EXPECT_EQ(F->Get(2, 1), 0.0f);
    EXPECT_EQ(F->Get(1, 2), 1.0f / 3.0f);
    EXPECT_EQ(F->Get(2, 2), 4.0f);
}

TEST(Quirk, IncompleteFactor3Sign) {
    const int positions[] = {0, 1, 2};
    BandMatrix A(2, 3, positions);
    A.SetDiagonal(0, vectorOf({-2}));
    A.SetDiagonal(1, vectorOf({4, 4}));
    A.SetDiagonal(2, vectorOf({2}));

    // A negative element is not eliminated, however large.
    test::expectSameElements(*A.IncompleteFactor3(0.1), A);
}

}  // namespace
}  // namespace orv
