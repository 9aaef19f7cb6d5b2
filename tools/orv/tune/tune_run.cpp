#include "tune/tune_run.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "methods/automatic.h"
#include "methods/interleaved_planes.h"
#include "pipeline/step_runner.h"

namespace orv::cli {

namespace {

std::unique_ptr<FloatImage> cut(const FloatImage& plane, const CropPlace& place) {
    auto part = std::make_unique<FloatImage>(place.width, place.height);
    for (int x = 0; x < place.width; ++x) {
        const float* const from = plane.row(place.x + x) + place.y;
        std::copy_n(from, place.height, part->row(x));
    }
    return part;
}

Planes cut(const Planes& planes, const CropPlace& place) {
    Planes parts;
    for (const auto& plane : planes) {
        parts.push_back(cut(*plane, place));
    }
    return parts;
}

Planes copyOf(const Planes& planes) {
    Planes copy;
    for (const auto& plane : planes) {
        copy.push_back(plane->clone());
    }
    return copy;
}

/// Planes as a picture of 8 bits.
Picture pictureOf(const Planes& planes) {
    Picture picture;
    picture.colours = static_cast<int>(planes.size());
    InterleavedSamples& samples = picture.samples;
    samples.width = planes[0]->width();
    samples.height = planes[0]->height();
    samples.channels = picture.colours;
    samples.bytes.resize(planes.size() * planes[0]->sampleCount());
    storePlanes(planes, samples);
    return picture;
}

/// Of samples that lie between the whole numbers, too; a grey picture counts as three equal
/// channels.
double psnrOf(const Planes& before, const Planes& after) {
    double sum = 0.0;
    double count = 0.0;
    for (std::size_t c = 0; c < after.size(); ++c) {
        const float* const from = before[c % before.size()]->data();
        const float* const to = after[c]->data();
        for (std::size_t i = 0; i < after[c]->sampleCount(); ++i) {
            const double difference = static_cast<double>(to[i]) - from[i];
            sum += difference * difference;
        }
        count += static_cast<double>(after[c]->sampleCount());
    }
    return sum == 0.0 ? std::numeric_limits<double>::infinity()
                      : 10.0 * std::log10(255.0 * 255.0 * count / sum);
}

/// The planes that a method runs on, with the second picture's.
struct Source {
    Planes part;
    Planes second;
    CropPlace inner;  ///< the crop within the part
};

void runCell(const Source& source, TuneCell& cell, const Progress& progress) {
    const Method& method = *cell.step.method;
    MethodResult result = method.secondPicture.empty()
                              ? method.run(copyOf(source.part), cell.step.arguments, progress)
                              : method.runWithSecond(copyOf(source.part), copyOf(source.second),
                                                     cell.step.arguments, progress);
    cell.error = result.error;
    if (!cell.error.empty()) {
        return;
    }
    cell.psnr = psnrOf(source.part, result.planes);
    cell.crop = pictureOf(cut(result.planes, source.inner));
    cell.noise = estimateNoise(result.planes).overall();
}

/// Chooses by the whole picture what automation has to choose.
void chooseAll(const Planes& planes, TuneSheet& sheet) {
    for (TuneCell& cell : sheet.cells) {
        if (cell.step.automatic) {
            chooseAutomatically(*cell.step.method, planes, cell.step.strength,
                                cell.step.arguments);
        }
    }
}

}  // namespace

Failure runCells(const Picture& picture, const CropOrder& order, TuneSheet& sheet,
                 ProgressBar& bar) {
    Planes planes = planesOf(picture.samples, picture.colours);
    sheet.width = picture.samples.width;
    sheet.height = picture.samples.height;
    std::string error = placeCrop(order, planes, sheet.crop);
    if (!error.empty()) {
        return {ExitCode::Usage, std::move(error)};
    }
    Source source;
    Step& step = sheet.cells.front().step;
    Failure failure =
        step.method->secondPicture.empty() ? Failure{} : readSecond(step, source.second);
    if (failure) {
        return failure;
    }
    chooseAll(planes, sheet);
    sheet.original = pictureOf(cut(planes, sheet.crop));
    const bool whole = static_cast<double>(sheet.width) * sheet.height <= kMostTunedWhole;
    sheet.worked = whole ? CropPlace{0, 0, sheet.width, sheet.height}
                         : withMargin(sheet.crop, kTuneMargin, sheet.width, sheet.height);
    source.part = whole ? std::move(planes) : cut(planes, sheet.worked);
    planes.clear();
    source.inner = {sheet.crop.x - sheet.worked.x, sheet.crop.y - sheet.worked.y,
                    sheet.crop.width, sheet.crop.height};
    sheet.noise = estimateNoise(source.part).overall();

    bar.start();
    std::size_t refused = 0;
    for (std::size_t i = 0; i < sheet.cells.size(); ++i) {
        const auto count = static_cast<double>(sheet.cells.size());
        runCell(source, sheet.cells[i], [&](double done) {
            bar.update((static_cast<double>(i) + done) / count);
            return true;
        });
        refused += sheet.cells[i].error.empty() ? 0 : 1;
    }
    return refused < sheet.cells.size()
               ? Failure{}
               : Failure{ExitCode::Refused, sheet.verb + ": " + sheet.cells.front().error};
}

}  // namespace orv::cli
