// Element access of the band matrix and the parts taken out of it.
#include <algorithm>
#include <cstddef>

#include "algebra/storage/band_matrix.h"

namespace orv {

void BandMatrix::Set(int i, int j, float value) {
    if (std::min(i, j) < 0 || std::max(i, j) >= n_) {
        return;
    }
    if (i == j) {
        SetMain(i, value);
    } else if (i < j) {
        SetLower(j - i, i, value);
    } else {
        SetUpper(i - j, j, value);
    }
}

float BandMatrix::Get(int i, int j) const {
    if (std::min(i, j) < 0 || std::max(i, j) >= n_) {
        return 0.0f;
    }
    if (i == j) {
        return GetMain(i);
    }
    return i < j ? GetLower(j - i, i) : GetUpper(i - j, j);
}

void BandMatrix::Set1(int i, int j, float value) {
    Set(i - 1, j - 1, value);
}

float BandMatrix::Get1(int i, int j) const {
    return Get(i - 1, j - 1);
}

int BandMatrix::DiagonalCount() const {
    return diagonalCount_;
}

int BandMatrix::LowerCount() const {
    return lowerCount_;
}

int BandMatrix::MainCount() const {
    return mainCount_;
}

int BandMatrix::UpperCount() const {
    return upperCount_;
}

int BandMatrix::Position(int k) const {
    return positions_[static_cast<std::size_t>(k)];
}

void BandMatrix::SetDiagonal(int position, const RealVector& vector) {
    if (RealVector* target = diagonal(position)) {
        target->CopyFrom(vector);
    }
}

void BandMatrix::SetMain(int i, float value) {
    SetUpper(0, i, value);
}

float BandMatrix::GetMain(int i) const {
    return GetUpper(0, i);
}

void BandMatrix::SetUpper(int k, int t, float value) {
    if (RealVector* v = diagonal(center_ + k)) {
        (*v)[t] = value;
    }
}

float BandMatrix::GetUpper(int k, int t) const {
    const RealVector* v = diagonal(center_ + k);
    return v != nullptr ? (*v)[t] : 0.0f;
}

void BandMatrix::SetLower(int k, int t, float value) {
    if (RealVector* v = diagonal(center_ - k)) {
        (*v)[t] = value;
    }
}

float BandMatrix::GetLower(int k, int t) const {
    const RealVector* v = diagonal(center_ - k);
    return v != nullptr ? (*v)[t] : 0.0f;
}

void BandMatrix::SetMain1(int i, float value) {
    SetUpper1(0, i, value);
}

float BandMatrix::GetMain1(int i) const {
    return GetUpper1(0, i);
}

void BandMatrix::SetUpper1(int k, int t, float value) {
    if (RealVector* v = diagonal(center_ + k)) {
        v->data1()[t] = value;
    }
}

float BandMatrix::GetUpper1(int k, int t) const {
    const RealVector* v = diagonal(center_ + k);
    return v != nullptr ? v->data1()[t] : 0.0f;
}

void BandMatrix::SetLower1(int k, int t, float value) {
    if (RealVector* v = diagonal(center_ - k)) {
        v->data1()[t] = value;
    }
}

float BandMatrix::GetLower1(int k, int t) const {
    const RealVector* v = diagonal(center_ - k);
    return v != nullptr ? v->data1()[t] : 0.0f;
}

// The stored positions [from, from + count) with their values; `addMain` adds a main diagonal of
// zeros behind lower positions and before upper ones.
std::unique_ptr<BandMatrix> BandMatrix::part(int from, int count, bool addMain) const {
    std::vector<int> chosen(positions_.begin() + from, positions_.begin() + from + count);
    if (addMain) {
        const bool upper = !chosen.empty() && chosen.front() > center_;
        chosen.insert(upper ? chosen.begin() : chosen.end(), center_);
    }
    auto result =
        std::make_unique<BandMatrix>(n_, static_cast<int>(chosen.size()), chosen.data());
    for (int k = from; k < from + count; ++k) {
        result->SetDiagonal(Position(k), *diagonal(Position(k)));
    }
    return result;
}

std::unique_ptr<Matrix> BandMatrix::ToStrictLower() const {
    return part(0, lowerCount_, /*addMain=*/false);
}

std::unique_ptr<Matrix> BandMatrix::ToStrictUpper() const {
    return part(lowerCount_ + mainCount_, upperCount_, /*addMain=*/false);
}

std::unique_ptr<Matrix> BandMatrix::ToLower() const {
    return part(0, lowerCount_ + mainCount_, /*addMain=*/false);
}

std::unique_ptr<Matrix> BandMatrix::ToUpper() const {
    return part(lowerCount_, mainCount_ + upperCount_, /*addMain=*/false);
}

std::unique_ptr<Matrix> BandMatrix::ToUnitLower() const {
    // quirk: unit-band-diagonal
    return part(0, lowerCount_, /*addMain=*/true);
}

std::unique_ptr<Matrix> BandMatrix::ToUnitUpper() const {
    // quirk: unit-band-diagonal
    return part(lowerCount_ + mainCount_, upperCount_, /*addMain=*/true);
}

}  // namespace orv
