#include "methods/plane_run.h"

#include <algorithm>
#include <cstddef>

#include "base/rounding.h"
#include "base/text_output.h"

namespace orv {

namespace {

bool allFinite(const FloatImage& plane) {
    // The difference of a finite sample with itself is 0, of any other sample NaN.
    const float* const samples = plane.data();
    float sum = 0.0f;
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        sum += samples[i] - samples[i];
    }
    return sum == 0.0f;
}

}  // namespace

MethodResult failure(std::string error) {
    MethodResult result;
    result.error = std::move(error);
    return result;
}

bool allFinite(const Planes& planes) {
    return std::all_of(planes.begin(), planes.end(),
                       [](const auto& plane) { return allFinite(*plane); });
}

std::string planesRefusal(const Planes& planes, std::string_view what) {
    if (planes.size() != 1 && planes.size() != 3) {
        return "takes 1 or 3 planes, not " + std::to_string(planes.size());
    }
    for (const auto& plane : planes) {
        if (plane == nullptr || plane->width() < 1 || plane->height() < 1 ||
            plane->width() != planes[0]->width() || plane->height() != planes[0]->height()) {
            return "the planes are empty or of unequal size";
        }
    }
    if (!allFinite(planes)) {
        return std::string(what) + " holds samples that aren't finite numbers";
    }
    return {};
}

HostProgressPause::HostProgressPause() : saved_(progressWindow()) {
    progressWindow().callback = nullptr;
}

HostProgressPause::~HostProgressPause() {
    progressWindow() = saved_;
}

bool StepObserver::onWork(double done) {
    furthest_ = std::max(furthest_, std::min(1.0, (step_ + done) / steps_));
    return progress_ ? progress_(furthest_) : true;
}

std::unique_ptr<FloatImage3> floatImage3Of(Planes planes) {
    std::unique_ptr<FloatImage3> image =
        FloatImage3::withoutPlanes(planes[0]->width(), planes[0]->height());
    for (int i = 0; i < 3; ++i) {
        image->setPlane(i, std::move(planes[static_cast<std::size_t>(i)]));
    }
    return image;
}

Planes planesOf(std::unique_ptr<FloatImage3> image) {
    Planes planes;
    for (int i = 0; image != nullptr && i < 3; ++i) {
        planes.push_back(image->takePlane(i));
    }
    return planes;
}

std::unique_ptr<RealImage> realImageOf(const FloatImage& plane) {
    std::unique_ptr<RealImage> real = RealImage::uninitialised(plane.width(), plane.height());
    std::copy_n(plane.data(), plane.sampleCount(), real->data());
    return real;
}

std::unique_ptr<FloatImage> floatImageOf(const RealImage& plane) {
    auto rounded = FloatImage::uninitialised(plane.width(), plane.height());
    std::transform(plane.data(), plane.data() + plane.sampleCount(), rounded->data(),
                   [](double sample) { return toFloat(sample); });
    return rounded;
}

std::unique_ptr<RealImage3> realImage3Of(Planes planes) {
    auto image = RealImage3::withoutPlanes(planes[0]->width(), planes[0]->height());
    for (int i = 0; i < 3; ++i) {
        auto& plane = planes[static_cast<std::size_t>(i)];
        image->setPlane(i, realImageOf(*plane));
        plane = nullptr;
    }
    return image;
}

Planes planesOf(std::unique_ptr<RealImage3> image) {
    Planes planes;
    for (int i = 0; image != nullptr && i < 3; ++i) {
        planes.push_back(floatImageOf(*image->takePlane(i)));
    }
    return planes;
}

MethodResult runPlaneWork(Planes planes, const Progress& progress,
                          const std::function<Planes(Planes)>& work) {
    std::string refusal = planesRefusal(planes, "the picture");
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }

    MethodResult result;
    {
        StepObserver observer(progress, /*steps=*/1);
        const SilencedOutput silence;
        const HostProgressPause pause;
        const WorkObserverScope scope(&observer);
        result.planes = work(std::move(planes));
        result.cancelled = workCancelled();
    }
    if (result.cancelled) {
        result.planes.clear();
        return result;
    }
    if (result.planes.empty() || !allFinite(result.planes)) {
        return failure("gives samples that aren't finite numbers with these parameters");
    }
    for (const auto& plane : result.planes) {
        plane->clamp(0.0f, 255.0f);
    }
    return result;
}

}  // namespace orv
