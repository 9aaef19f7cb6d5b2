#pragma once

namespace orv {

/// The smallest blur width that the recursion stands for, pixels; what is below counts as it.
inline constexpr double kSmallestBlurSigma = 0.5;

/// The denominators of the third-order recursion that approximates a Gaussian.
///
///     b0 = 1.57825 + 2.44413 q + 1.4281 q^2 + 0.422205 q^3
///     b1 = 2.44413 q + 2.85619 q^2 + 1.26661 q^3
///     b2 = -(1.4281 q^2 + 1.26661 q^3)
///     b3 = 0.422205 q^3
///
/// Source:  [YoungVanVliet1995], eq. 8c
struct GaussianDenominators {
    double b0;
    double b1;
    double b2;
    double b3;
};

/// `sigma`, but at least kSmallestBlurSigma.
///
/// Units:   pixels.
double clampedBlurSigma(double sigma);

/// The internal scale q that gives a Gaussian of width `sigma`.
///
///     q = 3.97156 - 4.14554 sqrt(1 - 0.26891 sigma)   up to 2.5
///     q = 0.98711 sigma - 0.9833                      above
///
/// Domain:  sigma at least 0.5, as clampedBlurSigma() gives it.
/// Quirk:   blur-scale-constant
/// Source:  [YoungVanVliet1995], eq. 11b
double gaussianScale(double sigma);

/// The denominators for the scale q, in double, each sum in the order written above.
GaussianDenominators gaussianDenominators(double q);

/// Gain of the input sample, B = 1 - (b1 + b2 + b3) / b0.
double gaussianGain(const GaussianDenominators& denominators);

}  // namespace orv
