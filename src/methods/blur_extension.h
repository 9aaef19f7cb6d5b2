#pragma once

#include <string>

#include "methods/method.h"

namespace orv {

/// What a recursive blur finds beyond the border: the values of `--extend`.
enum BlurExtension : int {
    ExtendByMirror = 0,  ///< the picture, mirrored
    ExtendByNone = 1,    ///< what the C face's operators make of the first samples of a line
};

/// What forbids a run on these planes, which stand up to planesRefusal(); empty when nothing does.
///
/// Without a margin a line starts from its first three samples, and has to have them.
std::string blurExtensionRefusal(const Planes& planes, int extension);

}  // namespace orv
