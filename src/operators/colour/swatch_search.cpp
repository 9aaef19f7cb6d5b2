#include "operators/colour/swatch_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orv {

namespace {

/// Cells of the grid a value. Scores crowd where swatches do, and there most cells should still
/// lie between two of the places where the nearest swatch changes.
constexpr std::size_t kCellsPerValue = 32;

double squaredDifference(double a, double b) {
    return (a - b) * (a - b);
}

}  // namespace

SwatchSearch::SwatchSearch(std::span<const std::unique_ptr<ColorSwatch>> swatches) {
    scores_.reserve(swatches.size());
    for (const auto& swatch : swatches) {
        scores_.push_back(swatch->score());
    }
    build();
}

SwatchSearch::SwatchSearch(std::span<const double> scores)
    : scores_(scores.begin(), scores.end()) {
    build();
}

void SwatchSearch::build() {
    std::vector<int> byScore;
    for (std::size_t k = 0; k < scores_.size(); ++k) {
        if (!std::isnan(scores_[k])) {
            byScore.push_back(static_cast<int>(k));
        }
    }
    const auto scoreAt = [&](int k) { return scores_[static_cast<std::size_t>(k)]; };
    std::sort(byScore.begin(), byScore.end(), [&](int a, int b) {
        return scoreAt(a) < scoreAt(b) || (scoreAt(a) == scoreAt(b) && a < b);
    });
    for (const int k : byScore) {
        if (order_.empty() || order_.back() < scoreAt(k)) {
            order_.push_back(scoreAt(k));
            earliest_.push_back(k);
        }
    }

    // The grid spans the finite values; a span that overflows or vanishes leaves one cell.
    const std::size_t cells = kCellsPerValue * order_.size() + 1;
    const auto isFinite = [](double score) { return std::isfinite(score); };
    const auto first = std::find_if(order_.begin(), order_.end(), isFinite);
    const auto last = std::find_if(order_.rbegin(), order_.rend(), isFinite);
    if (first != order_.end()) {
        low_ = *first;
        const double perUnit = static_cast<double>(cells - 1) / (*last - low_);
        cellsPerUnit_ = std::isfinite(perUnit) ? perUnit : 0.0;
    }
    cells_.assign(cells + 1, static_cast<int>(order_.size()));
    std::size_t next = 0;
    for (std::size_t i = 0; i < order_.size(); ++i) {
        for (const std::size_t cell = cellOf(order_[i]); next <= cell; ++next) {
            cells_[next] = static_cast<int>(i);
        }
    }
    settleCells();
}

/// Finds the cells in which one swatch is nearest to every score.
///
/// A cell is taken a little wider than it is, which covers the rounding of cellOf as long as
/// cells are wide beside the rounding of scores. The first and the last cell have no outer end.
void SwatchSearch::settleCells() {
    const std::size_t cells = cells_.size() - 1;
    settled_.assign(cells, -1);
    const double width = 1.0 / cellsPerUnit_;
    const double largest = std::fabs(low_) + static_cast<double>(cells) * width;
    if (!(width > 1e-9 * largest && width > 1e-90 && largest < 1e90)) {
        return;
    }
    for (std::size_t cell = 1; cell + 1 < cells; ++cell) {
        const double place = static_cast<double>(cell);
        settled_[cell] =
            settledFor(low_ + (place - 0.01) * width, low_ + (place + 1.01) * width);
    }
}

/// The swatch that is nearest to every score from `lowest` to `highest`, or -1.
///
/// With both neighbours in the order outside, the lead over a neighbour is a concave function of
/// the score, so that it is least at an end. There it has to be well above what rounding of the
/// squared differences may change, which leaves no tie in between either.
int SwatchSearch::settledFor(double lowest, double highest) const {
    constexpr double kMargin = 1.0 + 1e-9;
    const double middle = lowest + (highest - lowest) / 2.0;
    const std::size_t right = firstNotBelow(middle);
    const bool takesLeft = right == order_.size() ||
                           (right > 0 && middle - order_[right - 1] < order_[right] - middle);
    const std::size_t nearest = takesLeft ? right - 1 : right;
    const double value = order_[nearest];
    if (!std::isfinite(value)) {
        return -1;
    }
    const auto leads = [&](double score, double other) {
        return std::fabs(score - value) * kMargin + 1e-100 < std::fabs(score - other);
    };
    for (const std::size_t other : {nearest - 1, nearest + 1}) {
        if (other < order_.size() &&
            ((order_[other] >= lowest && order_[other] <= highest) ||
             !leads(lowest, order_[other]) || !leads(highest, order_[other]))) {
            return -1;
        }
    }
    return earliest_[nearest];
}

/// Never falls as the score rises, which is all that the search needs of it.
std::size_t SwatchSearch::cellOf(double score) const {
    const double place = (score - low_) * cellsPerUnit_;
    const double last = static_cast<double>(cells_.size() - 2);
    // Written so that NaN, also that of infinity times 0, falls into the first cell.
    return static_cast<std::size_t>(place > 0.0 ? std::min(place, last) : 0.0);
}

std::size_t SwatchSearch::firstNotBelow(double score) const {
    const std::size_t cell = cellOf(score);
    std::size_t place = static_cast<std::size_t>(cells_[cell]);
    while (place < order_.size() && order_[place] < score) {
        ++place;
    }
    return place;
}

int SwatchSearch::nearest(double score) const {
    const int settled = settled_[cellOf(score)];
    return settled >= 0 ? settled : search(score);
}

int SwatchSearch::search(double score) const {
    if (!std::isfinite(score)) {
        return scan(score);
    }
    const std::size_t count = order_.size();
    if (count == 0) {
        return 0;
    }
    std::size_t right = firstNotBelow(score);
    std::size_t left = right;
    const double none = std::numeric_limits<double>::infinity();
    const double above = right < count ? squaredDifference(score, order_[right]) : none;
    const double below = left > 0 ? squaredDifference(score, order_[left - 1]) : none;
    const double least = above < below ? above : below;

    int best = std::numeric_limits<int>::max();
    for (; right < count && squaredDifference(score, order_[right]) == least; ++right) {
        best = std::min(best, earliest_[right]);
    }
    for (; left > 0 && squaredDifference(score, order_[left - 1]) == least; --left) {
        best = std::min(best, earliest_[left - 1]);
    }
    return best;
}

void SwatchSearch::nearest(const double* scores, int* indices, std::size_t n) const {
    for (std::size_t i = 0; i < n; ++i) {
        indices[i] = nearest(scores[i]);
    }
}

int SwatchSearch::scan(double score) const {
    bool found = false;
    int best = 0;
    double least = 0.0;
    for (std::size_t k = 0; k < scores_.size() && !std::isnan(score); ++k) {
        const double difference = squaredDifference(score, scores_[k]);
        if (!std::isnan(difference) && (!found || difference < least)) {
            found = true;
            best = static_cast<int>(k);
            least = difference;
        }
    }
    return best;
}

}  // namespace orv
