#pragma once

#include <memory>

namespace orv {

class FloatImage;
class Matrix;
class RealVector;

/// What a scheme diffuses: turns image lines into vectors and back, and builds the matrices of
/// the discrete diffusion operator.
///
/// Coordinates are (x, y). A line matrix of row y is of order w, of column x of order h; the
/// full matrix is of order w h with the pixel (x, y) at index x + w y. Vectors and matrices
/// are optional targets: made when null, refilled otherwise, given back in every case.
///
/// The order of the virtual operations is part of the design.
class Flow {
  public:
    Flow() = default;
    Flow(const Flow&) = delete;
    Flow& operator=(const Flow&) = delete;

    virtual ~Flow();

    /// Hook: called once per `apply` of a scheme with the source plane. Does nothing.
    virtual void prepare(const FloatImage& plane);

    /// The plane that a data term pulls towards; null without one.
    virtual const FloatImage* initialPlane() const;

    /// Reserved: 0 in every class.
    virtual double reservedMeasure() const;

    /// Hook: the time step that the next right-hand sides belong to. Does nothing.
    virtual void setTimeStep(float tau);

    /// Hook: recomputes the diffusivity from the plane. Does nothing.
    virtual void update(const FloatImage& plane);

    /// The whole plane as one vector, index x + w y.
    virtual std::unique_ptr<RealVector> imageToVector(const FloatImage& plane,
                                                      std::unique_ptr<RealVector> vector);

    /// Writes a vector of w h samples into the plane; returns the plane.
    virtual FloatImage& vectorToImage(const RealVector& vector, FloatImage& plane);

    /// M: tau times the discrete diffusion operator of the whole plane.
    virtual std::unique_ptr<Matrix> fullMatrix(float tau, const FloatImage& plane,
                                               std::unique_ptr<Matrix> matrix) = 0;

    /// I + M of the whole plane.
    virtual std::unique_ptr<Matrix> explicitFullMatrix(float tau, const FloatImage& plane,
                                                       std::unique_ptr<Matrix> matrix);

    /// I - M of the whole plane.
    virtual std::unique_ptr<Matrix> implicitFullMatrix(float tau, const FloatImage& plane,
                                                       std::unique_ptr<Matrix> matrix);

    /// The w samples of row y.
    virtual std::unique_ptr<RealVector> lineVectorX(const FloatImage& plane, int y,
                                                    std::unique_ptr<RealVector> vector);

    /// Writes the w samples of row y back; returns the plane.
    virtual FloatImage& storeLineX(const RealVector& vector, int y, FloatImage& plane);

    /// The h samples of column x.
    virtual std::unique_ptr<RealVector> lineVectorY(const FloatImage& plane, int x,
                                                    std::unique_ptr<RealVector> vector);

    /// Writes the h samples of column x back; returns the plane.
    virtual FloatImage& storeLineY(const RealVector& vector, int x, FloatImage& plane);

    /// M along row y: tau times the one-dimensional diffusion operator.
    virtual std::unique_ptr<Matrix> lineMatrixX(float tau, const FloatImage& plane, int y,
                                                std::unique_ptr<Matrix> matrix) = 0;

    /// M along column x.
    virtual std::unique_ptr<Matrix> lineMatrixY(float tau, const FloatImage& plane, int x,
                                                std::unique_ptr<Matrix> matrix) = 0;

    /// I + M along row y.
    virtual std::unique_ptr<Matrix> explicitMatrixX(float tau, const FloatImage& plane, int y,
                                                    std::unique_ptr<Matrix> matrix);

    /// I + M along column x.
    virtual std::unique_ptr<Matrix> explicitMatrixY(float tau, const FloatImage& plane, int x,
                                                    std::unique_ptr<Matrix> matrix);

    /// I - M along row y.
    virtual std::unique_ptr<Matrix> implicitMatrixX(float tau, const FloatImage& plane, int y,
                                                    std::unique_ptr<Matrix> matrix);

    /// I - M along column x.
    virtual std::unique_ptr<Matrix> implicitMatrixY(float tau, const FloatImage& plane, int x,
                                                    std::unique_ptr<Matrix> matrix);
};

}  // namespace orv
