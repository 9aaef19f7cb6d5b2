#include "schemes/kernels/line_passes.h"

#include <algorithm>
#include <typeinfo>

#include "exports/work_window.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/flows/fidelity_diffusion_flow.h"

namespace orv {

namespace {

// Which strip holds what.
enum StripUse { kRight, kDiffusivity, kPivots, kPartial, kProducts, kBlend };

// The strips that a pass of columns walks through twice should stay in the second-level cache.
constexpr std::size_t kCacheBytes = std::size_t{3} << 19;

// Rows are read in pieces of as many samples as there are lanes, a column apart. Longer pieces
// gain more there than strips lose that outgrow the cache.
int lanesOfRows(int linesLeft) {
    for (const int lanes : {128, 64, 32}) {
        if (linesLeft >= lanes) {
            return lanes;
        }
    }
    return 16;
}

// The widest of `strips` transposed strips that the cache and the lines left allow.
int lanesOfColumns(int length, std::size_t strips, int linesLeft) {
    const std::size_t bytesPerLane = static_cast<std::size_t>(length) * strips * sizeof(float);
    for (const int lanes : {64, 32}) {
        if (linesLeft >= lanes &&
            bytesPerLane * static_cast<std::size_t>(lanes) <= kCacheBytes) {
            return lanes;
        }
    }
    return 16;
}

bool beginLines(LineObserver& observer, int first, int count, int lines) {
    for (int i = 0; i < count; ++i) {
        if (!observer.beginLine(first + i, lines)) {
            return false;
        }
    }
    return true;
}

std::size_t stripFloats(int length, int lanes) {
    return static_cast<std::size_t>(length) * static_cast<std::size_t>(lanes);
}

// Rows of the plane, too few to fill the lanes: the others become 0.
void copyRows(const FloatImage& plane, int first, int count, int lanes, float* strip) {
    for (int x = 0; x < plane.width(); ++x) {
        std::fill(std::copy_n(plane.row(x) + first, count, strip), strip + lanes, 0.0f);
        strip += lanes;
    }
}

void storeRows(const float* strip, int first, int count, int lanes, bool average,
               FloatImage& plane) {
    for (int x = 0; x < plane.width(); ++x) {
        float* out = plane.row(x) + first;
        for (int j = 0; j < count; ++j) {
            out[j] = average ? (strip[j] + out[j]) * 0.5f : strip[j];
        }
        strip += lanes;
    }
}

ConstLines readOnly(Lines lines) {
    return {lines.data, lines.stride};
}

}  // namespace

LineObserver::~LineObserver() = default;

bool LineObserver::beginLine(int line, int lines) {
    return reportLine(line, lines);
}

float LineFlow::matrixStep(float tau) const {
    return reducer == nullptr ? tau : reducer->reducedStep(tau);
}

bool describeLines(const Flow& flow, LineFlow& lines) {
    const bool withData = typeid(flow) == typeid(FidelityDiffusionFlow);
    if (!withData && typeid(flow) != typeid(DiffusionFlow)) {
        return false;
    }
    lines.diffusivity = static_cast<const DiffusionFlow&>(flow).diffusivityPlane();
    if (withData) {
        const auto& fidelity = static_cast<const FidelityDiffusionFlow&>(flow);
        lines.reducer = &fidelity;
        lines.data = fidelity.initialPlane();
        lines.dataWeight = static_cast<double>(fidelity.fidelity()) * fidelity.timeStep();
        lines.dataScale = 1.0 / (1.0 + lines.dataWeight);
    }
    return lines.diffusivity != nullptr;
}

float* LinePasses::strip(int number, const Strip& part, int length) {
    const std::size_t bytes = stripFloats(length, part.lanes) * sizeof(float);
    AlignedBlock& block = strips_[number];
    if (block.bytes() < bytes) {
        block = AlignedBlock();
        block = AlignedBlock(bytes, /*alignment=*/64);
    }
    return static_cast<float*>(block.data());
}

// The rows themselves, or a copy where they are too few.
ConstLines LinePasses::rowsOf(const FloatImage& plane, const Strip& part, int number) {
    if (part.count == part.lanes) {
        return {plane.data() + part.first, static_cast<std::size_t>(plane.height())};
    }
    float* copy = strip(number, part, plane.width());
    copyRows(plane, part.first, part.count, part.lanes, copy);
    return {copy, static_cast<std::size_t>(part.lanes)};
}

ConstLines LinePasses::rightRows(const LineFlow& flow, const FloatImage& from,
                                 const Strip& part) {
    const ConstLines rows = rowsOf(from, part, kRight);
    if (flow.data == nullptr) {
        return rows;
    }
    const ConstLines data = rowsOf(*flow.data, part, kBlend);
    const std::size_t lanes = static_cast<std::size_t>(part.lanes);
    float* blended = strip(kRight, part, from.width());
    for (std::size_t x = 0; x < static_cast<std::size_t>(from.width()); ++x) {
        kernels_->blendData(rows.data + x * rows.stride, data.data + x * data.stride,
                            flow.dataWeight, flow.dataScale, lanes, blended + x * lanes);
    }
    return {blended, lanes};
}

ConstLines LinePasses::rightColumns(const LineFlow& flow, const FloatImage& from,
                                    const Strip& part) {
    const int n = from.height();
    const std::size_t stride = static_cast<std::size_t>(n);
    const float* columns = from.row(part.first);
    if (flow.data != nullptr) {
        float* blended = strip(kBlend, part, n);
        kernels_->blendData(columns, flow.data->row(part.first), flow.dataWeight,
                            flow.dataScale, stripFloats(n, part.count), blended);
        columns = blended;
    }
    float* right = strip(kRight, part, n);
    kernels_->gatherColumns(columns, stride, part.count, n, right, part.lanes);
    return {right, static_cast<std::size_t>(part.lanes)};
}

// Runs the stage on one strip of right sides. The result goes to `x`, or to the strip that is
// returned when there is none.
ConstLines LinePasses::runStage(const LineStage& stage, const LineFlow& flow,
                                LineSystems systems, const Strip& part, ConstLines b,
                                const Lines* x) {
    const std::size_t lanes = static_cast<std::size_t>(part.lanes);
    const int n = systems.length;
    const float* right = static_cast<const float*>(strips_[kRight].data());
    int holder = right != nullptr && b.data == right ? kRight : kPartial;

    systems.step = flow.matrixStep(stage.productStep);
    for (int k = 1; k <= stage.products; ++k) {
        const bool lastToTarget = k == stage.products && !stage.solve && x != nullptr;
        holder = k % 2 != 0 ? kProducts : kRight;
        const Lines y = lastToTarget ? *x : Lines{strip(holder, part, n), lanes};
        kernels_->multiplyExplicit(systems, b, y);
        b = readOnly(y);
    }
    if (!stage.solve) {
        return b;
    }
    systems.step = flow.matrixStep(stage.solveStep);
    // A right side in a strip is no longer needed once its row is eliminated.
    float* partial = strip(holder, part, n);
    const Lines target = x != nullptr ? *x : Lines{partial, lanes};
    kernels_->solveImplicit(systems, b, target, strip(kPivots, part, n), partial,
                            stage.average && x != nullptr);
    return readOnly(target);
}

void LinePasses::alongX(const LineFlow& flow, const LineStage& stage, const FloatImage& from,
                        FloatImage& to, LineObserver& observer) {
    kernels_ = &lineKernels();
    const int n = from.width();
    const int lines = from.height();
    for (Strip part = {0, 0, 0}; part.first < lines; part.first += part.count) {
        part.lanes = lanesOfRows(lines - part.first);
        part.count = std::min(part.lanes, lines - part.first);
        if (!beginLines(observer, part.first, part.count, lines)) {
            return;
        }
        const LineSystems systems = {rowsOf(*flow.diffusivity, part, kDiffusivity), n,
                                     part.lanes, 0.0f};
        const ConstLines b = rightRows(flow, from, part);
        const Lines rows = {to.data() + part.first, static_cast<std::size_t>(lines)};
        const bool direct = part.count == part.lanes;
        const ConstLines result =
            runStage(stage, flow, systems, part, b, direct ? &rows : nullptr);
        if (!direct) {
            storeRows(result.data, part.first, part.count, part.lanes, stage.average, to);
        }
    }
}

void LinePasses::alongY(const LineFlow& flow, const LineStage& stage, const FloatImage& from,
                        FloatImage& to, LineObserver& observer) {
    kernels_ = &lineKernels();
    const int n = from.height();
    const int lines = from.width();
    const std::size_t stride = static_cast<std::size_t>(n);
    for (Strip part = {0, 0, 0}; part.first < lines; part.first += part.count) {
        part.lanes = lanesOfColumns(n, 3, lines - part.first);
        part.count = std::min(part.lanes, lines - part.first);
        if (!beginLines(observer, part.first, part.count, lines)) {
            return;
        }
        float* g = strip(kDiffusivity, part, n);
        kernels_->gatherColumns(flow.diffusivity->row(part.first), stride, part.count, n, g,
                                part.lanes);
        const LineSystems systems = {
            {g, static_cast<std::size_t>(part.lanes)}, n, part.lanes, 0.0f};
        const ConstLines b = rightColumns(flow, from, part);
        const ConstLines result = runStage(stage, flow, systems, part, b, nullptr);
        kernels_->scatterColumns(result.data, part.lanes, part.count, n, to.row(part.first),
                                 stride, stage.average);
    }
}

void LinePasses::solveRows(const LineFactors& factors, FloatImage& plane) {
    kernels_ = &lineKernels();
    const int n = plane.width();
    const int lines = plane.height();
    for (Strip part = {0, 0, 0}; part.first < lines; part.first += part.count) {
        part.lanes = lanesOfRows(lines - part.first);
        part.count = std::min(part.lanes, lines - part.first);
        const ConstLines b = rowsOf(plane, part, kRight);
        float* partial = strip(kPartial, part, n);
        if (part.count == part.lanes) {
            const Lines rows = {plane.data() + part.first, static_cast<std::size_t>(lines)};
            kernels_->solveFactored(factors, part.lanes, b, rows, partial);
            continue;
        }
        const Lines solved = {partial, static_cast<std::size_t>(part.lanes)};
        kernels_->solveFactored(factors, part.lanes, b, solved, partial);
        storeRows(partial, part.first, part.count, part.lanes, /*average=*/false, plane);
    }
}

void LinePasses::solveColumns(const LineFactors& factors, FloatImage& plane) {
    kernels_ = &lineKernels();
    const int n = plane.height();
    const int lines = plane.width();
    const std::size_t stride = static_cast<std::size_t>(n);
    for (Strip part = {0, 0, 0}; part.first < lines; part.first += part.count) {
        part.lanes = lanesOfColumns(n, 1, lines - part.first);
        part.count = std::min(part.lanes, lines - part.first);
        float* b = strip(kRight, part, n);
        kernels_->gatherColumns(plane.row(part.first), stride, part.count, n, b, part.lanes);
        const Lines lanes = {b, static_cast<std::size_t>(part.lanes)};
        kernels_->solveFactored(factors, part.lanes, readOnly(lanes), lanes, b);
        kernels_->scatterColumns(b, part.lanes, part.count, n, plane.row(part.first), stride,
                                 /*average=*/false);
    }
}

}  // namespace orv
