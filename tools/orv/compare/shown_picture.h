#pragma once

#include "files/image_file.h"

namespace orv::cli {

/// The smallest whole number by which both sides are divided for a picture to show at most
/// `side` samples on its longer side.
int reductionForSide(const Picture& picture, int side);

/// The same for at most `pixels` pixels in all.
int reductionForPixels(const Picture& picture, double pixels);

/// A picture for the eye: 8 bits, no alpha.
///
/// Shapes:  ceil(width / reduction) x ceil(height / reduction); each sample is the mean of a
///          square of the picture, rounded to nearest.
Picture shownPicture(const Picture& picture, int reduction);

/// |after - before| of every channel as a picture, reduced likewise.
///
/// Units:   `gain` times grey levels; what exceeds 255 becomes 255.
/// Shapes:  grey when both pictures are, else in colour.
Picture shownDifference(const Picture& before, const Picture& after, int reduction,
                        double gain);

/// The mean over the channels of a colour picture of 8 bits, rounded to nearest.
Picture shownMean(const Picture& colour);

/// A part of a picture, its samples as they are and without metadata.
Picture partOfPicture(const Picture& picture, int x, int y, int width, int height);

}  // namespace orv::cli
