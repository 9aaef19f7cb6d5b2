#include "operators/colour/swatch_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orv {

namespace {

/// Cells of the grid a value: most cells then hold one value or none.
constexpr std::size_t kCellsPerValue = 4;

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
}

/// Never falls as the score rises, which is all that the search needs of it.
std::size_t SwatchSearch::cellOf(double score) const {
    const double place = (score - low_) * cellsPerUnit_;
    const double last = static_cast<double>(cells_.size() - 2);
    // Written so that infinity times 0 falls into the first cell.
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
