#pragma once

namespace orv {

class CoefficientBands;
class RealImage;

/// The row of the table of critical values for a significance level: the first whose level is
/// at or below alpha, else the last.
int criticalRow(float alpha);

/// The significance level of a row, 0 to 16.
float tableAlpha(int row);

/// The critical value of a row for bands of a side of 2^(column + 2), column up to 7.
///
/// Domain:  column from -3 on: values and significance levels are one array, and a column below 0
///          gives what stands in front of the row.
/// Quirk:   critical-column
/// Source:  [OgdenParzen1996]
float criticalValue(int row, int column);

/// Shrinks every detail band by the threshold that leaves a Brownian sheet, finest level first.
///
/// Prints the significance level, and a warning where height and width differ. Coefficients
/// are divided and multiplied by the noise as in SureShrink2D.
///
/// Shapes:  coefficients width x height, changed in place.
/// Source:  [OgdenParzen1996]
void BrownianShrink2D(RealImage& coefficients, int height, int width, int levels, float alpha,
                      bool verbose);

/// BrownianShrink2D on bands wherever they stand.
void brownianShrink(CoefficientBands& bands, float alpha, bool verbose);

}  // namespace orv
