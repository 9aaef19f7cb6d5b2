#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/image_file.h"
#include "methods/automatic.h"

namespace orv::cli {

/// What a method with its defaults needs for a picture.
struct MethodMemory {
    std::string name;
    double bytes = 0.0;
    bool fits = true;
};

/// What is told about one picture.
struct Inspection {
    std::string path;
    std::string error;  ///< one line that begins with the path; empty when all below is known
    PictureHeader header;
    std::optional<AutomaticChoice> choice;  ///< the measured noise; none where memory is short
    std::string suggestion;            ///< a whole command; empty where nothing is to be done
    std::vector<MethodMemory> memory;  ///< in the order of the catalogue
    std::optional<double> limit;       ///< bytes that a run may take, where it is known
};

/// Reads a picture and measures it.
///
/// `limit` is what a run may take; where the picture itself needs more, it isn't decoded.
Inspection inspect(const std::string& path, std::optional<double> limit);

/// The inspection as lines of at most 80 characters, a name longer than that aside.
std::string inspectionText(const Inspection& inspection);

/// The inspections as JSON text, an array with an object for each; see docs/inspect.md.
std::string inspectionsAsJson(const std::vector<Inspection>& inspections);

/// What an EXIF orientation from 1 to 8 asks for: "turned right by 90 degrees".
std::string_view orientationText(int orientation);

}  // namespace orv::cli
