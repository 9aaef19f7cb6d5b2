/* A host as a stranger would write it: restores a small picture and prints what came out. */
#include <orv/orv.h>
#include <orv/orv_constants.h>
#include <stdio.h>
#include <string.h>

enum { WIDTH = 33, HEIGHT = 21, STRIDE = (3 * WIDTH + 3) / 4 * 4 };

static unsigned checksum(const unsigned char* bytes, int count) {
    unsigned sum = 2166136261u; /* FNV-1a */
    int i;
    for (i = 0; i < count; ++i) {
        sum = (sum ^ bytes[i]) * 16777619u;
    }
    return sum;
}

int main(void) {
    unsigned char pixels[HEIGHT * STRIDE];
    BITMAPINFOHEADER header;
    void* photo;
    void* result;
    unsigned before;
    int width = 0;
    int height = 0;
    int i;

    for (i = 0; i < HEIGHT * STRIDE; ++i) {
        pixels[i] = (unsigned char)(60 + i * i % 131);
    }
    memset(&header, 0, sizeof header);
    header.biSize = sizeof header;
    header.biWidth = WIDTH;
    header.biHeight = HEIGHT;
    header.biPlanes = 1;
    header.biBitCount = 24;

    photo = ConvertORVImage(&header, pixels);
    result = ORVFastRestoration(photo, ORV_SCHEME_AOS, ORV_SOLVER_THOMAS, 1, 2.0, 5, 0.7, 10.0,
                                ORV_FLOW_PERONA_MALIK, ORV_GRADIENT_NORM_CENTRAL, 0);
    if (result == NULL) {
        fputs("no result\n", stderr);
        return 1;
    }
    GetORVImageInfo(result, &width, &height);
    before = checksum(GetORVImageData(photo), 3 * WIDTH * HEIGHT);
    printf("%s %dx%d %08x %08x\n", ORV_VERSION_STRING, width, height, before,
           checksum(GetORVImageData(result), 3 * width * height));
    DestroyORVImage(result);
    DestroyORVImage(photo);
    return 0;
}
