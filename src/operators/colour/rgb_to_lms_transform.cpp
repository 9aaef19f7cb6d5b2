#include "operators/colour/rgb_to_lms_transform.h"

namespace orv {

namespace {

// quirk: inexact-cone-matrices
constexpr ColourRows kForwardRows = {
    {0.3811, 0.1967, 0.0241}, {0.5783, 0.7244, 0.1288}, {0.0402, 0.0782, 0.8444}};
constexpr ColourRows kInverseRows = {
    {4.4679, -1.2186, 0.0497}, {-3.5873, 2.3809, -0.2439}, {0.1193, -0.1624, 1.2045}};

}  // namespace

RgbToLmsTransform::RgbToLmsTransform()
    : ColorSpaceMatrixTransform(kForwardRows, kInverseRows) {}

}  // namespace orv
