#pragma once

#include "wavelets/transform/wavelet_filter.h"

namespace orv {

class RealImage;

/// 2 to the n.
///
/// Domain:  n to 30; above, the largest int.
/// Fails:   a negative n writes a line to standard error and gives 0.
int power2(int n);

/// The largest r with 2 to the r not above n; -1 for n of 0 or below.
int floorLog2(int n);

/// Discrete wavelet transform of a periodic line, `levels` passes deep.
///
///     output[i]       = sum_k x[2i + k - low.offset] low.taps[k]      i < (n + 1) / 2
///     output[n/2 + i] = sum_k x[2i + k - high.offset] high.taps[k]    indices modulo n
///
/// for each pass, x being the first n entries and n the length, halved after each pass. Sums
/// start at 0 and take k in ascending order.
///
/// Shapes:  input and output `length` doubles, not overlapping.
/// Domain:  in a pass of odd n the first high output is lost under the last low one.
/// Fails:   a working buffer that can't be had writes "FwtVector: unable to malloc working
///          vector" to standard error and ends the process with status 1.
/// Cost:    one buffer of n samples and a margin a call.
/// Source:  [Mallat1989]
void FwtVector(const double* input, double* output, int length, int levels,
               const WaveletFilter& low, const WaveletFilter& high);

/// Inverse of FwtVector, with the synthesis filters.
///
///     output[i] = sum_k a[i + k - low.offset] low.taps[k]
///               + sum_k b[i + k - high.offset] high.taps[k]           indices modulo m
///
/// for each pass of length m, doubled after each pass; a and b hold the low and the high half at
/// even positions and 0 at odd ones. The low half is what the pass before made, the high half
/// comes from the input. Both sums start at 0, take k in ascending order and are then added.
///
/// Shapes:  input and output `length` doubles, not overlapping.
/// Domain:  a pass of odd m counts its last position as 0. With `levels` below 1 power2 writes
///          its line and the output is a copy of the input.
/// Fails:   as FwtVector, with its own name in the text.
/// Cost:    two buffers of n samples and a margin a call.
/// Source:  [Mallat1989]
void IwtVector(const double* input, double* output, int length, int levels,
               const WaveletFilter& low, const WaveletFilter& high);

/// Separable transform of a plane: in each pass one level of FwtVector along x for every y, then
/// along y for every x; the next pass works on the corner of half the sizes.
///
/// Shapes:  source and coefficients width x height; they must not be one plane.
/// Domain:  `levels` of 0 or below copies the source.
/// Cost:    even sizes in every pass: one reading and one writing of the plane, and a third of
///          that again for all further levels; otherwise line by line.
/// Source:  [Mallat1989]
void FwtImage(const RealImage& source, RealImage& coefficients, int height, int width,
              int levels, const WaveletFilter& low, const WaveletFilter& high);

/// Inverse of FwtImage, with the synthesis filters: along y first, then along x, the coarsest
/// level first.
///
/// Shapes:  coefficients and target width x height; they must not be one plane.
/// Domain:  with `levels` below 1 power2 writes its line and the target is a copy.
/// Source:  [Mallat1989]
void IwtImage(const RealImage& coefficients, RealImage& target, int height, int width,
              int levels, const WaveletFilter& low, const WaveletFilter& high);

}  // namespace orv
