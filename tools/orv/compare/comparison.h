#pragma once

#include <string>
#include <string_view>

#include "compare/picture_metrics.h"
#include "files/image_file.h"

namespace orv::cli {

/// Where the two pictures of a comparison come from.
struct ComparisonFacts {
    std::string beforePath;
    std::string afterPath;
    std::string command;  ///< as the user gave it
};

/// Two pictures of one size, what they are called and what they differ by.
struct Comparison {
    const Picture& before;
    const Picture& after;
    const ComparisonFacts& facts;
    const PictureComparison& figures;

    /// The name of the file before without its folder, which stays when both names are the same.
    std::string beforeName() const;
    /// The name of the file after, likewise.
    std::string afterName() const;
};

/// The forms of a comparison that goes into a file.
enum class ComparisonForm { Unknown, Page, Numbers, Sheet };

/// What the ending of a file name asks for.
struct ComparisonFormat {
    ComparisonForm form = ComparisonForm::Unknown;
    const FormatEntry* picture = nullptr;  ///< of a sheet
    std::string ending;                    ///< of a sheet, with its dot
};

/// The form that the ending of a file name asks for.
ComparisonFormat comparisonFormatOf(std::string_view path);

/// ".html .json .png ..." of all that this build writes.
std::string comparisonExtensions();

/// Why a comparison can't go into a file of this name, as one line; empty when it can.
std::string comparisonRefusal(const std::string& path);

/// Writes a comparison to `temporaryPath`, which may have any ending.
///
/// Fails:   with a reason without the path; an empty text means success.
std::string writeComparison(const Comparison& comparison, const std::string& temporaryPath,
                            const ComparisonFormat& format);

}  // namespace orv::cli
