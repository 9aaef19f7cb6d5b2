#pragma once

#include <string>
#include <string_view>

#include "compare/comparison.h"

namespace orv::cli {

/// The page of a comparison with places for its pictures and figures; made by the build.
std::string_view comparisonTemplate();

/// One HTML page that needs nothing else: pictures, slider, difference, figures, histograms.
///
/// Pictures of up to 2 million pixels are held without loss and larger ones as JPEG; above 26
/// million, and above 1.5 million without libvips, they are reduced by a whole number. The page
/// says so. The difference is made from the samples of the files and never goes through JPEG.
///
/// Fails:   with a reason; an empty text means success.
std::string comparisonPage(const Comparison& comparison, std::string& page);

/// Bytes as base64.
std::string base64(const unsigned char* bytes, std::size_t count);

}  // namespace orv::cli
