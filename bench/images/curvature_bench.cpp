#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "base/cpu_features.h"
#include "images/curvature_flow.h"
#include "images/real_image_differences.h"
#include "images/rgb_discrete_image.h"
#include "support/pictures.h"
#include "support/ratios.h"

// One step of each curvature flow on the three planes of a photo of 4 megapixels, in doubles: the
// kernels of every target against the formulas sample by sample on two planes.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr double kCoeff = 0.2;

double limited(double v) {
    if (v < 0.0) {
        return 0.0;
    }
    return v > 255.0 ? 255.0 : v;
}

double normAt(const RealImage& I, int x, int y) {
    const double fx = centralX(I, x, y);
    const double fy = centralY(I, x, y);
    return 1.0 + fx * fx + fy * fy;
}

double termAt(CurvatureFlow flow, const RealImage& I, int x, int y) {
    const double fx = centralX(I, x, y);
    const double fy = centralY(I, x, y);
    const double n = (1.0 + fy * fy) * secondXX(I, x, y) - 2.0 * fx * fy * secondXY(I, x, y) +
                     (1.0 + fx * fx) * secondYY(I, x, y);
    const double d = normAt(I, x, y);
    switch (flow) {
        case CurvatureFlow::Beltrami:
            return n / (d * d);
        case CurvatureFlow::PeronaMalik:
            return n / (d * std::sqrt(d));
        case CurvatureFlow::MeanCurvature:
            break;
    }
    return n / d;
}

double pullAt(const RealImage& I, int x, int y) {
    const double gx = (1.0 / normAt(I, x + 1, y) - 1.0 / normAt(I, x - 1, y)) / 2.0;
    const double gy = (1.0 / normAt(I, x, y + 1) - 1.0 / normAt(I, x, y - 1)) / 2.0;
    return gx * centralX(I, x, y) + gy * centralY(I, x, y);
}

// A step in its plain form: `out` holds the samples of `in`.
void plainStep(CurvatureFlow flow, const RealImage& in, RealImage& out) {
    for (int x = 1; x < in.width() - 1; ++x) {
        for (int y = 1; y < in.height() - 1; ++y) {
            out.row(x)[y] = limited(kCoeff * termAt(flow, in, x, y) + out.row(x)[y]);
        }
    }
}

void plainGeodesicStep(CurvatureFlow flow, const RealImage& in, RealImage& out) {
    for (int x = 2; x < in.width() - 2; ++x) {
        for (int y = 2; y < in.height() - 2; ++y) {
            out.row(x)[y] = limited(kCoeff * termAt(flow, in, x, y) +
                                    0.2 * kCoeff * pullAt(in, x, y) + out.row(x)[y]);
        }
    }
}

// The coupled flow keeps its increments on planes of their own.
void plainFullColor(RealImage3& planes, RealImage3& increments) {
    for (int x = 2; x < planes.width() - 2; ++x) {
        for (int y = 2; y < planes.height() - 2; ++y) {
            double p[3], q[3], a[3], m[3], c[3];
            double pp = 0, qq = 0, pq = 0, ap = 0, mp = 0, mq = 0, cq = 0, aq = 0, cp = 0;
            for (int k = 0; k < 3; ++k) {
                const RealImage& I = planes.plane(k);
                p[k] = centralX(I, x, y);
                q[k] = centralY(I, x, y);
                a[k] = secondXX(I, x, y);
                m[k] = secondXY(I, x, y);
                c[k] = secondYY(I, x, y);
                pp += p[k] * p[k];
                qq += q[k] * q[k];
                pq += p[k] * q[k];
                ap += a[k] * p[k];
                mp += m[k] * p[k];
                mq += m[k] * q[k];
                cq += c[k] * q[k];
                aq += a[k] * q[k];
                cp += c[k] * p[k];
            }
            const double g11 = 1.0 + pp, g22 = 1.0 + qq, g12 = pq;
            const double det = g11 * g22 - g12 * g12;
            const double g11x = 2.0 * ap, g11y = 2.0 * mp, g22x = 2.0 * mq, g22y = 2.0 * cq;
            const double g12x = aq + mp, g12y = cp + mq;
            const double detx = g22x * g11 + g11x * g22 - 2.0 * g12x * g12;
            const double dety = g11y * g22 + g22y * g11 - 2.0 * g12y * g12;
            for (int k = 0; k < 3; ++k) {
                increments.plane(k).row(x)[y] =
                    det <= 0.0 ? 0.0
                               : ((g22 * a[k] - g12 * m[k]) + (g22x * p[k] - g12x * q[k]) +
                                  (g11 * c[k] - g12 * m[k]) + (g11y * q[k] - g12y * p[k]) -
                                  ((g11 * q[k] - g12 * p[k]) * dety +
                                   (g22 * p[k] - g12 * q[k]) * detx) /
                                      (2.0 * det)) /
                                     det;
            }
        }
    }
    for (int k = 0; k < 3; ++k) {
        for (int x = 0; x < planes.width(); ++x) {
            for (int y = 0; y < planes.height(); ++y) {
                double& sample = planes.plane(k).row(x)[y];
                sample = limited(kCoeff * increments.plane(k).row(x)[y] + sample);
            }
        }
    }
}

bool sameBits(const RealImage3& a, const RealImage3& b) {
    for (int k = 0; k < 3; ++k) {
        if (std::memcmp(a.plane(k).data(), b.plane(k).data(),
                        a.plane(k).sampleCount() * sizeof(double)) != 0) {
            return false;
        }
    }
    return true;
}

enum class Form { Plain, Kernels };

struct Job {
    const char* name;
    CurvatureFlow flow;
    bool geodesic;
    bool coupled;
};

constexpr Job kJobs[] = {
    {"beltrami", CurvatureFlow::Beltrami, false, false},
    {"perona-malik", CurvatureFlow::PeronaMalik, false, false},
    {"mean-curvature", CurvatureFlow::MeanCurvature, false, false},
    {"geodesic-beltrami", CurvatureFlow::Beltrami, true, false},
    {"geodesic-perona-malik", CurvatureFlow::PeronaMalik, true, false},
    {"geodesic-mean-curvature", CurvatureFlow::MeanCurvature, true, false},
    {"full-color-beltrami", CurvatureFlow::Beltrami, false, true},
};

void step(const Job& job, Form form, RealImage3& planes, RealImage3& second) {
    if (job.coupled) {
        if (form == Form::Plain) {
            plainFullColor(planes, second);
        } else {
            fullColorBeltramiStep(kCoeff, planes);
        }
        return;
    }
    for (int k = 0; k < 3; ++k) {
        if (form == Form::Kernels) {
            if (job.geodesic) {
                geodesicCurvatureStep(job.flow, kCoeff, 0.2 * kCoeff, planes.plane(k));
            } else {
                curvatureStep(job.flow, kCoeff, planes.plane(k));
            }
        } else if (job.geodesic) {
            plainGeodesicStep(job.flow, second.plane(k), planes.plane(k));
        } else {
            plainStep(job.flow, second.plane(k), planes.plane(k));
        }
        if (form == Form::Plain) {
            second.plane(k).assign(planes.plane(k));
        }
    }
}

// What the plain form reads beside the planes: their copy, or the increments.
RealImage3 secondOf(const Job& job, const RealImage3& planes) {
    return job.coupled ? RealImage3(planes.width(), planes.height()) : RealImage3(planes);
}

void curvature(benchmark::State& state, const Job& job, Form form, KernelTarget target) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const RgbDiscreteImage image(kSize.width, kSize.height, bytes.data());
    limitKernelTarget(target);
    RealImage3 planes(image);
    RealImage3 second = secondOf(job, planes);
    if (form == Form::Kernels) {
        RealImage3 expected(image);
        step(job, Form::Plain, expected, second);
        step(job, form, planes, second);
        if (!sameBits(planes, expected)) {
            state.SkipWithError("the bits differ from those of the plain form");
            return;
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { step(job, form, planes, second); });
    }
    const std::string base = std::string(job.name) + "/";
    const std::string name = base + (form == Form::Plain ? "plain" : nameOf(target));
    keepBest(name, best);
    tellRatio(state, "times_plain", base + "plain", name);
    limitKernelTarget(KernelTarget::Avx512);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

const bool kRegistered = [] {
    const auto add = [](const Job& job, Form form, KernelTarget target) {
        const std::string name =
            std::string(job.name) + "/" + (form == Form::Plain ? "plain" : nameOf(target));
        benchmark::RegisterBenchmark(
            name.c_str(), [=](benchmark::State& state) { curvature(state, job, form, target); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    for (const Job& job : kJobs) {
        add(job, Form::Plain, KernelTarget::Generic);
        for (const KernelTarget target :
             {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
            if (isAvailable(target)) {
                add(job, Form::Kernels, target);
            }
        }
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
