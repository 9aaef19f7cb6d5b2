#include <cstdio>
#include <cstdlib>
#include <vector>

#include "orv/orv.h"
#include "support/pictures.h"

// photo_memory SCHEME SIGMA: restores 24 megapixels through the C face and exits with 0 when
// there is a result. Run under a tool that tells the peak.
int main(int argc, char** argv) {
    const char* scheme = argc > 1 ? argv[1] : "AOS";
    const double sigma = argc > 2 ? std::atof(argv[2]) : 0.0;
    constexpr int kWidth = 6000;
    constexpr int kHeight = 4000;
    BITMAPINFOHEADER header = {};
    header.biWidth = kWidth;
    header.biHeight = kHeight;
    header.biBitCount = 24;
    void* image = nullptr;
    {
        const std::vector<unsigned char> bytes = orv::bench::photoBytes(kWidth, kHeight);
        image = ConvertORVImage(&header, bytes.data());
    }
    void* result = ORVFastRestoration(image, scheme, 0, 1, 2.0, 5, sigma, 10.0, "PM", 0, 0);
    const bool done = result != nullptr;
    DestroyORVImage(result);
    DestroyORVImage(image);
    return done ? 0 : 1;
}
