#include <algorithm>
#include <utility>

#include "algebra/real_vector.h"
#include "algebra/storage/band_matrix.h"
#include "base/rounding.h"
#include "schemes/flows/diffusion_flow.h"

namespace orv {

namespace {

// The diagonals of the five-point stencil on w x h samples, lower ones first. A plane of one
// column has no neighbours along x, a plane of one row none along y.
std::unique_ptr<BandMatrix> stencilMatrix(int w, int h) {
    const int n = w * h;
    const int centre = n - 1;
    int positions[5] = {};
    int count = 0;
    if (h > 1) {
        positions[count++] = centre - w;
    }
    if (w > 1) {
        positions[count++] = centre - 1;
    }
    positions[count++] = centre;
    if (w > 1) {
        positions[count++] = centre + 1;
    }
    if (h > 1) {
        positions[count++] = centre + w;
    }
    return std::make_unique<BandMatrix>(n, count, positions);
}

// Writes the rows of the matrix pixel by pixel.
class StencilRows {
  public:
    StencilRows(double tau, const FloatImage& g, BandMatrix& matrix)
        : tau_(tau), g_(g), w_(g.width()), h_(g.height()) {
        const int centre = w_ * h_ - 1;
        main_ = matrix.diagonal(centre);
        if (w_ > 1) {
            west_ = matrix.diagonal(centre - 1);
            east_ = matrix.diagonal(centre + 1);
        }
        if (h_ > 1) {
            north_ = matrix.diagonal(centre - w_);
            south_ = matrix.diagonal(centre + w_);
        }
    }

    // A diagonal below the main one counts its elements by the column, one above by the row.
    // The order of the four terms is the order of the sum.
    void write(int x, int y) {
        const int p = x + w_ * y;
        const float here = g_.row(x)[y];
        double sum = 0.0;
        if (x < w_ - 1) {
            sum += (*east_)[p] = entry(here, g_.row(x + 1)[y]);
        }
        if (x > 0) {
            sum += (*west_)[p - 1] = entry(here, g_.row(x - 1)[y]);
        }
        if (y < h_ - 1) {
            sum += (*south_)[p] = entry(here, g_.row(x)[y + 1]);
        }
        if (y > 0) {
            sum += (*north_)[p - w_] = entry(here, g_.row(x)[y - 1]);
        }
        (*main_)[p] = toFloat(-sum);
    }

  private:
    float entry(double here, double neighbour) const {
        return toFloat((neighbour + here) * tau_ * 0.5);
    }

    double tau_;
    const FloatImage& g_;
    int w_;
    int h_;
    RealVector* main_ = nullptr;
    RealVector* west_ = nullptr;
    RealVector* east_ = nullptr;
    RealVector* north_ = nullptr;
    RealVector* south_ = nullptr;
};

}  // namespace

std::unique_ptr<Matrix> DiffusionFlow::fullMatrix(float tau, const FloatImage& plane,
                                                  std::unique_ptr<Matrix> matrix) {
    const int w = plane.width();
    const int h = plane.height();
    if (matrix == nullptr || matrix->Rows() != w * h) {
        matrix = stencilMatrix(w, h);
    } else {
        matrix->Fill(0.0f);
    }
    // No row reads another one, so the order of the pixels is free.
    StencilRows rows(tau, *diffusivity_, static_cast<BandMatrix&>(*matrix));
    for (int x = 0; x < w; ++x) {
        for (int y = 0; y < h; ++y) {
            rows.write(x, y);
        }
    }
    return matrix;
}

}  // namespace orv
