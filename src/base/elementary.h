#pragma once

namespace orv {

/// The engine's exponential, for single values.
///
/// The same bits as the arrays of base/kernels/elementary_kernels.h, on every platform; so with
/// its kin below.
///
/// Domain:  every double; special values as the C standard tells.
double elementaryExp(double x);
/// 1 - e^x for x of at most 0, without the digits that the difference loses where e^x is near 1.
double elementaryOneMinusExp(double x);
/// The natural logarithm.
double elementaryLog(double x);
/// The logarithm to base 10.
double elementaryLog10(double x);
/// 10 to the power of x; exact for whole x from 0 to 22.
double elementaryExp10(double x);
/// The arc tangent, in radians from -pi/2 to pi/2.
double elementaryAtan(double x);
/// x to the power of y.
double elementaryPow(double x, double y);

}  // namespace orv
