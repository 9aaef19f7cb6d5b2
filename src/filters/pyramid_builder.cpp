#include "filters/pyramid_builder.h"

#include <utility>

#include "filters/kernels/retinex_kernels.h"
#include "images/real_image.h"
#include "images/real_image_pyramid.h"

namespace orv {

namespace {

void reduceLevels(RealImagePyramid& pyramid) {
    const RetinexKernels& kernels = retinexKernels();
    for (int k = 1; k < pyramid.levels(); ++k) {
        if (pyramid.level(k) == nullptr) {
            pyramid.setLevel(k,
                             RealImage::uninitialised(pyramid.widthAt(k), pyramid.heightAt(k)));
        }
        const RealImage& finer = *pyramid.level(k - 1);
        RealImage& coarser = *pyramid.level(k);
        kernels.reduce(finer.data(), finer.height(), coarser.data(), coarser.width(),
                       coarser.height());
    }
}

}  // namespace

PyramidBuilder::PyramidBuilder(int levels) : levels_(levels) {}

PyramidBuilder::~PyramidBuilder() = default;

std::unique_ptr<RealImagePyramid> PyramidBuilder::build(
    const RealImage& plane, std::unique_ptr<RealImagePyramid> pyramid) {
    if (!fits(pyramid.get(), plane.width(), plane.height())) {
        return buildFrom(plane.clone(), nullptr);
    }
    if (pyramid->level(0) == nullptr) {
        return buildFrom(plane.clone(), std::move(pyramid));
    }
    pyramid->level(0)->assign(plane);
    reduceLevels(*pyramid);
    return pyramid;
}

std::unique_ptr<RealImagePyramid> PyramidBuilder::buildFrom(
    std::unique_ptr<RealImage> plane, std::unique_ptr<RealImagePyramid> pyramid) {
    if (fits(pyramid.get(), plane->width(), plane->height())) {
        pyramid->setLevel(0, std::move(plane));
    } else {
        pyramid = std::make_unique<RealImagePyramid>(std::move(plane), levels_, ratio_,
                                                     /*allocate=*/true);
    }
    reduceLevels(*pyramid);
    return pyramid;
}

bool PyramidBuilder::fits(const RealImagePyramid* pyramid, int width, int height) const {
    return pyramid != nullptr && pyramid->width() == width && pyramid->height() == height &&
           pyramid->levels() == levels_;
}

}  // namespace orv
