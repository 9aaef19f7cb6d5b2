/* A host in C99 that knows the library by its file name and orv.h alone. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "orv/orv.h"

#define REQUIRE(condition)                                                  \
    do {                                                                    \
        if (!(condition)) {                                                 \
            fprintf(stderr, "line %d: not so: %s\n", __LINE__, #condition); \
            return 1;                                                       \
        }                                                                   \
    } while (0)

/* ISO C has no cast from an object to a function pointer; the bytes are the same. */
#define LOAD(variable, name)                         \
    do {                                             \
        void* symbol = dlsym(library, name);         \
        REQUIRE(symbol != NULL);                     \
        memcpy(&variable, &symbol, sizeof variable); \
    } while (0)

static int reports = 0;

static void ORV_CALLBACK countReport(int percent) {
    (void)percent;
    ++reports;
}

int main(int argc, char** argv) {
    void (*setCallBack)(ORVCallBack);
    void* (*convert)(const BITMAPINFOHEADER*, const unsigned char*);
    void (*destroy)(void*);
    void (*info)(void*, int*, int*);
    unsigned char* (*data)(void*);
    void* (*restore)(void*, const char*, int, int, double, int, double, double, const char*,
                     int, int);
    void* (*barash)(void*, int, int, double, double, double, double, bool, bool);
    unsigned char pixels[5 * 16];
    BITMAPINFOHEADER header;
    void* library;
    void* image;
    void* result;
    int width = 0;
    int height = 0;
    int i;

    REQUIRE(argc == 2);
    library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    REQUIRE(library != NULL);
    LOAD(setCallBack, "SetORVCallBack");
    LOAD(convert, "ConvertORVImage");
    LOAD(destroy, "DestroyORVImage");
    LOAD(info, "GetORVImageInfo");
    LOAD(data, "GetORVImageData");
    LOAD(restore, "ORVFastRestoration");
    LOAD(barash, "ORVIFAosBarashOp");

    for (i = 0; i < (int)sizeof pixels; ++i) {
        pixels[i] = (unsigned char)(37 * i);
    }
    memset(&header, 0, sizeof header);
    header.biSize = sizeof header;
    header.biWidth = 5;
    header.biHeight = 5;
    header.biPlanes = 1;
    header.biBitCount = 24;

    image = convert(&header, pixels);
    REQUIRE(image != NULL);
    info(image, &width, &height);
    REQUIRE(width == 5 && height == 5);
    REQUIRE(memcmp(data(image) + 15, pixels + 16, 15) == 0);

    setCallBack(countReport);
    result = restore(image, "AOS", 0, 1, 0.0, 5, 0.0, 10.0, "PM", 0, 0);
    REQUIRE(result != NULL);
    REQUIRE(result != image);
    REQUIRE(reports == 3 * (1 + 5 + 1 + 5));
    REQUIRE(memcmp(data(result), data(image), 75) == 0);
    REQUIRE(barash(image, 1, 0, 1.0, 1.0, 1.0, 1.0, true, false) == NULL);

    destroy(result);
    destroy(image);
    destroy(NULL);
    REQUIRE(dlclose(library) == 0);
    return 0;
}
