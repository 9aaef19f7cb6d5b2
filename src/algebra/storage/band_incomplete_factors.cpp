// Incomplete factorisations of the band matrix, with rows and columns counted from 1.
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/storage/band_matrix.h"
#include "base/text_output.h"

namespace orv {

namespace {

// One row of the elimination: the work row, the positions it gained, and its trace.
class WorkRow {
  public:
    explicit WorkRow(int n) : w_(n), extra_(n) {}

    float* data1() { return w_.data1(); }

    void scatter(const Matrix& R, int row, const IndexList& pattern) {
        row_ = row;
        for (int k = 0; k < pattern.count; ++k) {
            const int column = pattern.items[static_cast<std::size_t>(k)];
            w_.data1()[column] = R.Get1(column, row);
        }
    }

    // n elements for each of n rows: silenced, the row isn't walked at all.
    void trace() const {
        if (isTextSilenced()) {
            return;
        }
        // quirk: incomplete-lu0-prints
        printText("row%d: ", row_);
        w_.Print();
    }

    // w[m] -= factor element, where an element that was 0 is a gain.
    void subtract(int m, float factor, float element) {
        float& target = w_.data1()[m];
        if (target == 0.0f) {
            extra_.Append(m);
        }
        target = target - factor * element;
        trace();
    }

    void gather(Matrix& R, const IndexList& pattern) {
        for (int k = 0; k < pattern.count; ++k) {
            const int column = pattern.items[static_cast<std::size_t>(k)];
            R.Set1(column, row_, w_.data1()[column]);
            w_.data1()[column] = 0.0f;
        }
        for (int k = 0; k < extra_.count; ++k) {
            w_.data1()[extra_.items[static_cast<std::size_t>(k)]] = 0.0f;
        }
        extra_.Clear();
    }

  private:
    RealVector w_;
    IndexList extra_;
    int row_ = 0;
};

}  // namespace

std::unique_ptr<Matrix> BandMatrix::IncompleteLU0() const {
    auto R = std::make_unique<BandMatrix>(*this);
    WorkRow work(n_);
    std::unique_ptr<IndexList> pattern;
    std::unique_ptr<IndexList> upper;
    for (int row = 2; row <= n_; ++row) {
        pattern = RowPattern1(row, std::move(pattern));
        work.scatter(*R, row, *pattern);
        work.trace();
        for (int p = 0; p < pattern->count; ++p) {
            const int k = pattern->items[static_cast<std::size_t>(p)];
            float& factor = work.data1()[k];
            if (k >= row || factor == 0.0f) {
                continue;
            }
            factor = factor / R->Get1(k, k);
            work.trace();
            upper = RowPattern1(k, std::move(upper));
            for (int q = 0; q < upper->count; ++q) {
                const int m = upper->items[static_cast<std::size_t>(q)];
                if (m > k) {
                    work.subtract(m, factor, R->Get1(m, k));
                }
            }
        }
        work.trace();
        work.gather(*R, *pattern);
    }
    return R;
}

std::unique_ptr<Matrix> BandMatrix::IncompleteFactor3(double tolerance) const {
    auto R = std::make_unique<BandMatrix>(*this);
    for (int j = 2; j <= n_; ++j) {
        for (int i = 1; i < j; ++i) {
            // quirk: incomplete-factor3-sign
            if (!(R->Get1(i, j) > 0.0f)) {
                continue;
            }
            R->Set1(i, j, R->Get1(i, j) / R->Get1(i, i));
            const float factor = R->Get1(i, j);
            for (int k = i + 1; k <= n_; ++k) {
                R->Set1(k, j, R->Get1(k, j) - R->Get1(k, i) * factor);
            }
        }
        for (int k = 1; k <= n_; ++k) {
            if (k != j && std::fabs(double{R->Get1(k, j)}) < tolerance) {
                R->Set1(k, j, 0.0f);
            }
        }
    }
    return R;
}

}  // namespace orv
