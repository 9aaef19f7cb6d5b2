#include "solvers/lanczos/symmetric_lanczos.h"

#include <cmath>
#include <utility>

#include "base/rounding.h"

namespace orv {

void SymmetricLanczos::Begin(double norm) {
    v->CopyFrom(*r);
    v->DivideScalar(toFloat(norm));
    beta = 0.0;
    gamma = 0.0;
    c = -1.0;
    s = 0.0;
    vOld->Fill(0.0F);
}

SymmetricLanczos::Column SymmetricLanczos::Advance(const Matrix& A) {
    t = A.Multiply(*v, std::move(t));
    t->AddScaled(toFloat(-beta), *vOld);
    const double alpha = v->Dot(*t);
    t->AddScaled(toFloat(-alpha), *v);
    beta = std::sqrt(t->SumOfSquares());
    vOld->CopyFrom(*v);
    v->CopyFrom(*t);
    v->DivideScalar(toFloat(beta));

    const double x = alpha * s - gamma * c;
    const double y = beta * s;
    const double g = -gamma * s - alpha * c;
    gamma = beta * c;
    const double rot = std::sqrt(beta * beta + g * g);
    c = g / rot;
    s = beta / rot;
    return {x, y, rot};
}

}  // namespace orv
