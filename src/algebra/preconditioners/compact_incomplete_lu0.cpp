#include "algebra/preconditioners/compact_incomplete_lu0.h"

#include <utility>

#include "algebra/result_arguments.h"

namespace orv {

CompactIncompleteLU0::CompactIncompleteLU0(const Matrix& source)
    : PreconditionerMatrix(source.Rows(), /*factorCount=*/2),
      source_(&source),
      lu_(source.IncompleteLU0()) {}

CompactIncompleteLU0::CompactIncompleteLU0(const CompactIncompleteLU0& other)
    : PreconditionerMatrix(other), source_(other.source_), lu_(cloneOf(other.lu_.get())) {}

std::unique_ptr<Matrix> CompactIncompleteLU0::Clone() const {
    return std::make_unique<CompactIncompleteLU0>(*this);
}

void CompactIncompleteLU0::PrintTo(std::FILE* file) const {
    put(file, "%s", "Compact IncompleteLU0 for full matrices\n");
    if (lu_ != nullptr) {
        lu_->PrintTo(file);
    }
}

std::unique_ptr<RealVector> CompactIncompleteLU0::Solve(const RealVector& b,
                                                        std::unique_ptr<RealVector> x) const {
    if (lu_ == nullptr) {
        return nullptr;
    }
    work_ = lu_->SolveUnitLower(b, std::move(work_));
    if (work_ == nullptr) {
        return nullptr;
    }
    return lu_->SolveUpper(*work_, std::move(x));
}

const Matrix* CompactIncompleteLU0::GetFactor(int) const {
    return nullptr;
}

void CompactIncompleteLU0::SetFactor(int, std::unique_ptr<Matrix>) {}

std::unique_ptr<Matrix> CompactIncompleteLU0::SourceClone() const {
    return source_->Clone();
}

}  // namespace orv
