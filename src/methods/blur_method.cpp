#include "methods/blur_method.h"

#include <array>
#include <string>
#include <utility>

#include "exports/work_window.h"
#include "methods/blur_extension.h"
#include "methods/plane_run.h"
#include "operators/thin/van_vliet_blur_operator.h"

namespace orv {

namespace {

constexpr std::array<Choice, 2> kExtensions{{
    {"mirror", ExtendByMirror, "by mirroring, in doubles; keeps borders and grey levels"},
    {"none", ExtendByNone,
     "not at all, in floats, as the C function does; borders get stripes"},
}};

std::span<const Choice> extensionChoices() {
    return kExtensions;
}

constexpr std::array<Parameter, 2> kParameters{
    real("sigma", "pixels", 2.0, 0.5, 256.0,
         "width of the Gaussian; noise of single pixels goes from about 1 on", "blurs wider"),
    choice("extend", ExtendByMirror, extensionChoices,
           "how the picture is extended beyond its borders"),
};

constexpr std::array<std::string_view, 2> kNotes{
    "It softens edges as it softens noise; restore keeps edges.",
    "The picture is mirrored by 6 sigma on each side, so a wide blur takes more memory.",
};

constexpr std::array<std::string_view, 2> kLiterature{
    "Young, van Vliet: Recursive implementation of the Gaussian filter, 1995",
    "van Vliet, Young, Verbeek: Recursive Gaussian derivative filters, 1998",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    const VanVlietBlurOperator op(arguments.real("sigma"));
    const int extension = arguments.integer("extend");
    std::string refusal = planesRefusal(planes, "the picture");
    if (refusal.empty()) {
        refusal = blurExtensionRefusal(planes, extension);
    }
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        const int count = static_cast<int>(source.size());
        for (int i = 0; i < count && !workCancelled(); ++i) {
            const WorkSlice slice(i, count);
            FloatImage& plane = *source[static_cast<std::size_t>(i)];
            if (extension == ExtendByMirror) {
                op.blurFinely(plane);
            } else {
                op.blurInFloats(plane);
            }
            reportWork(1, 1);
        }
        return source;
    });
}

}  // namespace

constinit const Method kBlurMethod{
    .name = "blur",
    .summary = "Blur a picture by a Gaussian, however wide",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv blur photo.jpg soft.jpg --sigma 3",
};

}  // namespace orv
