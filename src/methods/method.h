#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "images/float_image.h"
#include "methods/arguments.h"
#include "methods/parameter.h"

namespace orv {

struct NoiseToRemove;

/// The planes of a picture: one for grey, three for red, green and blue, all of one size.
///
/// Units:   black is 0 and white is 255 whatever the depth of the picture; samples between the
///          whole numbers keep what an 8-bit picture loses.
/// Owns:    its planes.
using Planes = std::vector<std::unique_ptr<FloatImage>>;

/// Hears the share of the work that is done, from 0 to 1, never falling; returns false to stop.
using Progress = std::function<bool(double)>;

/// What a run gives: planes, or a reason in words, or word that it was stopped.
struct MethodResult {
    Planes planes;
    std::string error;       ///< one line, empty unless the method refused or failed
    bool cancelled = false;  ///< the progress function asked to stop
};

/// A method of the engine: what it is called, what it takes and how it runs.
struct Method {
    std::string_view name;
    std::string_view summary;
    std::span<const Parameter> parameters;
    std::span<const std::string_view> literature;

    /// Runs the method.
    ///
    /// Shapes:  1 or 3 planes of one size in; as many of that size out, within 0 to 255.
    /// Fails:   with an error text: wrong planes, samples that aren't finite, arguments that
    ///          don't go together, a solver that diverged. Nothing is printed.
    /// Owns:    takes the planes, so that their memory can be freed on the way.
    MethodResult (*run)(Planes planes, const Arguments& arguments, const Progress& progress);

    /// What help and messages call the picture.
    std::string_view picture = "IN";
    /// What they call a second picture that the method learns from, such as "STYLE"; empty for
    /// the methods that take one picture. Those with a second one have a null `run`.
    std::string_view secondPicture = {};
    /// Runs a method with a second picture.
    ///
    /// Shapes:  as `run`; the two pictures may differ in size. The result has the size of the
    ///          first, and three planes if the method gives colour to a grey one.
    MethodResult (*runWithSecond)(Planes planes, Planes second, const Arguments& arguments,
                                  const Progress& progress) = nullptr;

    /// Chooses the parameters that are open in the arguments, so that noise of this strength
    /// goes; null for methods without automation. Values that were given stay and the others are
    /// chosen to suit them. No noise chooses values with which a run changes no sample. See
    /// methods/automatic.h.
    void (*choose)(const NoiseToRemove& noise, Arguments& arguments) = nullptr;
    /// Whether a client should choose without being asked, when nothing or little is given.
    bool automatic = false;

    /// What people trip over, one sentence or two each.
    std::span<const std::string_view> notes = {};
    /// A command of the tool that shows the method at its best.
    std::string_view example = {};
};

}  // namespace orv
