// The direct factors of the band matrix.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "algebra/kernels/vector_kernels.h"
#include "algebra/storage/band_matrix.h"
#include "base/rounding.h"

namespace orv {

namespace {

constexpr int kOutputRows = 16;
constexpr int kRowGroup = 4;

std::unique_ptr<BandMatrix> emptyBand(int n, int w) {
    std::vector<int> positions;
    for (int offset = -w; offset <= w; ++offset) {
        positions.push_back(n - 1 + offset);
    }
    return std::make_unique<BandMatrix>(n, static_cast<int>(positions.size()),
                                        positions.data());
}

// Eliminates row after row. The sums of a row are kept in double for all its columns and grow
// term by term with k, which is the order of the dense triple loop; the last w rows of U are kept
// densely, finished rows leave for the diagonals in small blocks.
class BandElimination {
  public:
    BandElimination(const BandMatrix& A, int w, bool unitUpper)
        : n_(A.Rows()),
          w_(w),
          width_(2 * w + 1),
          unitUpper_(unitUpper),
          source_(n_, A.allStrands()),
          result_(emptyBand(n_, w)),
          sums_(static_cast<std::size_t>(width_)),
          upperRows_(static_cast<std::size_t>(w + kRowGroup) *
                     static_cast<std::size_t>(upperStride())),
          pivots_(static_cast<std::size_t>(w + kRowGroup)),
          output_(static_cast<std::size_t>(kOutputRows) * static_cast<std::size_t>(width_)) {}

    std::unique_ptr<Matrix> run() {
        for (int r = 0; r < n_; ++r) {
            float* row = output_.data() + offsetOf(r % kOutputRows, width_);
            loadRow(r, row);
            eliminateLower(r, row);
            finishRow(r, row);
            if (r % kOutputRows == kOutputRows - 1 || r == n_ - 1) {
                store(r - r % kOutputRows, r + 1);
            }
        }
        return std::move(result_);
    }

  private:
    // A stored row of U holds the w columns right of its diagonal and zeros for the columns
    // that only the later rows of a group reach.
    int upperStride() const { return w_ + kRowGroup - 1; }
    static std::size_t offsetOf(int row, int stride) {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(stride);
    }
    float* upperRow(int k) {
        return upperRows_.data() + offsetOf(k % (w_ + kRowGroup), upperStride());
    }
    float& pivot(int k) { return pivots_[static_cast<std::size_t>(k % (w_ + kRowGroup))]; }

    // row[c - (r - w)] is column c of row r.
    void loadRow(int r, float* row) {
        std::fill(row, row + width_, 0.0f);
        std::fill(sums_.begin(), sums_.end(), 0.0);
        const float* elements = source_.row(r);
        for (int k = 0; k < source_.count(); ++k) {
            row[source_.offset(k) + w_] = elements[k];
        }
    }

    float lowerElement(int r, int k, const float* row) {
        const int at = k - r + w_;
        const float rest = row[at] - toFloat(sums_[static_cast<std::size_t>(at)]);
        return unitUpper_ ? rest : rest / pivot(k);
    }

    void eliminateLower(int r, float* row) {
        const VectorKernels& kernels = vectorKernels();
        int k = std::max(r - w_, 0);
        for (; k + kRowGroup <= r; k += kRowGroup) {
            eliminateGroup(r, k, row, kernels);
        }
        for (; k < r; ++k) {
            const float l = lowerElement(r, k, row);
            row[k - r + w_] = l;
            kernels.accumulateScaled(sums_.data() + (k + 1 - r + w_), l, upperRow(k),
                                     std::min(w_, n_ - k - 1));
        }
    }

    // Columns k to k + 3 of L, whose rows of U then go into the sums at once.
    void eliminateGroup(int r, int k, float* row, const VectorKernels& kernels) {
        float* l = row + (k - r + w_);
        double* sums = sums_.data() + (k - r + w_);
        for (int q = 0; q < kRowGroup; ++q) {
            l[q] = lowerElement(r, k + q, row);
            const float* u = upperRow(k + q);
            for (int next = q + 1; next < kRowGroup; ++next) {
                sums[next] += double{l[q]} * double{u[next - q - 1]};
            }
        }
        kernels.accumulateRows4(sums + kRowGroup, l, upperRow(k) + 3, upperRow(k + 1) + 2,
                                upperRow(k + 2) + 1, upperRow(k + 3), w_);
    }

    void finishRow(int r, float* row) {
        const double* sums = sums_.data() + w_;
        float* u = row + w_;
        u[0] = u[0] - toFloat(sums[0]);
        pivot(r) = u[0];
        float* kept = upperRow(r);
        std::fill(kept, kept + upperStride(), 0.0f);
        const int count = std::min(w_, n_ - 1 - r);
        for (int t = 1; t <= count; ++t) {
            const float rest = u[t] - toFloat(sums[t]);
            u[t] = unitUpper_ ? rest / u[0] : rest;
            kept[t - 1] = u[t];
        }
    }

    void store(int first, int last) {
        for (int offset = -w_; offset <= w_; ++offset) {
            RealVector& target = *result_->diagonal(n_ - 1 + offset);
            const int from = std::max(first, -offset);
            const int to = std::min(last, n_ - offset);
            for (int r = from; r < to; ++r) {
                target[r + std::min(offset, 0)] =
                    output_[offsetOf(r % kOutputRows, width_) +
                            static_cast<std::size_t>(offset + w_)];
            }
        }
    }

    int n_;
    int w_;
    int width_;
    bool unitUpper_;
    BandRows source_;
    std::unique_ptr<BandMatrix> result_;
    std::vector<double> sums_;
    std::vector<float> upperRows_;
    std::vector<float> pivots_;
    std::vector<float> output_;
};

int halfBandwidth(const BandMatrix& A) {
    int w = 0;
    for (int k = 0; k < A.DiagonalCount(); ++k) {
        w = std::max(w, std::abs(A.Position(k) - (A.Rows() - 1)));
    }
    return w;
}

}  // namespace

std::unique_ptr<Matrix> BandMatrix::FactorLU() const {
    return BandElimination(*this, halfBandwidth(*this), /*unitUpper=*/false).run();
}

std::unique_ptr<Matrix> BandMatrix::FactorLU1() const {
    return BandElimination(*this, halfBandwidth(*this), /*unitUpper=*/true).run();
}

}  // namespace orv
