#pragma once

#include <string>

#include "case_values.h"
#include "library.h"

namespace golden {

/// What a call gives beside text and progress.
struct Returned {
    void* handle = nullptr;  ///< a new picture, to be destroyed, or null
    std::string size;        ///< for exports that return no handle
    std::string pixels;
};

/// Calls an export with the next values; knows how to call it by its name.
using CallExport = Returned (*)(const Library&, CaseValues&);

/// Null for an unknown name.
CallExport exportNamed(const std::string& name);

/// Receives the progress values since `forgetProgress`.
void ORV_CALLBACK recordProgress(int percent);
void forgetProgress();

/// The values as the table holds them.
std::string recordedProgress();

}  // namespace golden
