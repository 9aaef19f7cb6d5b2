#include "filters/linear_system.h"

#include "base/text_output.h"

namespace orv {

LinearSystem::LinearSystem(int n)
    : n_(n),
      matrix_(std::make_unique<FTriDiagonalMatrix>(n, 0.0f)),
      x_(std::make_unique<RealVector>(n)),
      b_(std::make_unique<RealVector>(n)) {}

LinearSystem::~LinearSystem() = default;

void LinearSystem::setMatrix(const FTriDiagonalMatrix& matrix) {
    matrix_->AssignFrom(matrix);
}

void LinearSystem::setTriDiagonal(const RealVector& super, const RealVector& diag,
                                  const RealVector& sub) {
    matrix_->upper().CopyFrom(super);
    matrix_->main().CopyFrom(diag);
    matrix_->lower().CopyFrom(sub);
}

void LinearSystem::setX(const RealVector& vector) {
    x_->CopyFrom(vector);
}

void LinearSystem::setB(const RealVector& vector) {
    b_->CopyFrom(vector);
}

int LinearSystem::entryCount() const {
    return 3 * n_ - 2;
}

int LinearSystem::rows() const {
    return n_;
}

int LinearSystem::columns() const {
    return n_;
}

RealVector& LinearSystem::x() {
    return *x_;
}

RealVector& LinearSystem::b() {
    return *b_;
}

FTriDiagonalMatrix& LinearSystem::matrix() {
    return *matrix_;
}

void LinearSystem::solve(const FTriDiagonalMatrix& matrix, const RealVector& x0,
                         const RealVector& b0) {
    setMatrix(matrix);
    setX(x0);
    setB(b0);
    factorise();
}

void LinearSystem::solve(const RealVector& x0, const RealVector& b0) {
    setX(x0);
    setB(b0);
    factorise();
}

RealVector& LinearSystem::solved(const FTriDiagonalMatrix& matrix, const RealVector& x0,
                                 const RealVector& b0) {
    solve(matrix, x0, b0);
    return x();
}

RealVector& LinearSystem::solved(const RealVector& x0, const RealVector& b0) {
    solve(x0, b0);
    return x();
}

void LinearSystem::print(std::FILE* file) const {
    printTextTo(file, "Linear System\n");
    matrix_->PrintTo(file);
    printTextTo(file, " x: ");
    x_->PrintTo(file);
    printTextTo(file, " b: ");
    b_->PrintTo(file);
}

void LinearSystem::print() const {
    printText("Linear System\n");
    matrix_->Print();
    printText(" x: ");
    x_->Print();
    printText(" b: ");
    b_->Print();
}

}  // namespace orv
