/* dll_probe DLL: what Windows itself says about orv.dll, and what calls leave behind on the stack.
 *
 * Prints a line for each finding.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "orv/orv.h"

enum { kWidth = 64, kHeight = 24, kWide = 40000, kMostAddresses = 8 };

/* Addresses at which the callback found its argument. */
static const void* addresses[kMostAddresses];
static int addressCount = 0;
static int reports = 0;

static void ORV_CALLBACK onProgress(int percent) {
    const void* volatile here = &percent;
    int i;

    ++reports;
    for (i = 0; i < addressCount && addresses[i] != here; ++i) {
    }
    if (i == addressCount && addressCount < kMostAddresses) {
        addresses[addressCount++] = here;
    }
}

static FARPROC find(HMODULE dll, const char* name) {
    const FARPROC function = GetProcAddress(dll, name);

    if (function == NULL) {
        printf("no %s\n", name);
        exit(1);
    }
    return function;
}
#define TAKE(pointer, name)                       \
    do {                                          \
        const FARPROC found_ = find(dll, name);   \
        memcpy(&pointer, &found_, sizeof found_); \
    } while (0)

/* The version that Explorer shows. */
static void printVersion(const char* path) {
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeA(path, &unused);
    void* block = malloc(size + 1);
    VS_FIXEDFILEINFO* fixed = NULL;
    char* product = NULL;
    UINT length = 0;

    if (size == 0 || !GetFileVersionInfoA(path, 0, size, block) ||
        !VerQueryValueA(block, "\\", (void**)&fixed, &length) ||
        !VerQueryValueA(block, "\\StringFileInfo\\040904B0\\ProductName", (void**)&product,
                        &length)) {
        printf("no version\n");
        exit(1);
    }
    printf("version %s %u.%u.%u\n", product, (unsigned)HIWORD(fixed->dwProductVersionMS),
           (unsigned)LOWORD(fixed->dwProductVersionMS),
           (unsigned)HIWORD(fixed->dwProductVersionLS));
    free(block);
}

/* A callback that is called by the wrong convention finds its argument elsewhere each time, as the
 * stack moves by 4 bytes a call. */
static void printStack(HMODULE dll) {
    void (*setCallBack)(ORVCallBack);
    void* (*convert)(const BITMAPINFOHEADER*, const unsigned char*);
    void (*destroy)(void*);
    void* (*susan)(void*, int, double, double);
    unsigned char pixels[kWidth * kHeight * 3];
    BITMAPINFOHEADER header = {0};
    void* image;
    size_t i;

    TAKE(setCallBack, "SetORVCallBack");
    TAKE(convert, "ConvertORVImage");
    TAKE(destroy, "DestroyORVImage");
    TAKE(susan, "ORVISusanRestoration");
    for (i = 0; i < sizeof pixels; ++i) {
        pixels[i] = (unsigned char)(i * 37);
    }
    header.biSize = sizeof header;
    header.biWidth = kWidth;
    header.biHeight = kHeight;
    header.biBitCount = 24;
    image = convert(&header, pixels);
    setCallBack(onProgress);
    destroy(susan(image, 1, 20.0, 1.0));
    destroy(image);
    printf("%d reports, the argument in at most 2 places: %s\n", reports,
           addressCount >= 1 && addressCount <= 2 ? "yes" : "no");
}

/* The rule "Brownian" takes whole bands of the square that this picture is padded to: at the first
 * level 2 to the power of 33 bytes, which no 32-bit number counts. */
static void printWide(HMODULE dll) {
    void* (*convert)(const BITMAPINFOHEADER*, const unsigned char*);
    void* (*wavelet)(void*, const char*, int, int);
    unsigned char* pixels = calloc(kWide, 3);
    BITMAPINFOHEADER header = {0};
    void* image;

    TAKE(convert, "ConvertORVImage");
    TAKE(wavelet, "ORVWaveletDenoising");
    header.biWidth = kWide;
    header.biHeight = 1;
    header.biBitCount = 24;
    image = convert(&header, pixels);
    printf("a picture of %d pixels: %s\n", kWide, image == NULL ? "null" : "a handle");
    printf("its square: %s\n", wavelet(image, "Brownian", 1, 0) == NULL ? "null" : "a handle");
    free(pixels);
}

/* Loading and unloading leaves nothing behind that a later load would trip over. */
static void printLoads(const char* path) {
    int i;

    for (i = 0; i < 20; ++i) {
        const HMODULE dll = LoadLibraryA(path);

        if (dll == NULL || !FreeLibrary(dll)) {
            printf("load %d failed\n", i);
            return;
        }
    }
    printf("20 loads, still there: %s\n", GetModuleHandleA("orv.dll") == NULL ? "no" : "yes");
}

int main(int argc, char** argv) {
    HMODULE dll;

    if (argc != 2 || (dll = LoadLibraryA(argv[1])) == NULL) {
        printf("no library\n");
        return 1;
    }
    printVersion(argv[1]);
    printStack(dll);
    if (sizeof(void*) == 4) {
        printWide(dll);
    }
    FreeLibrary(dll);
    printLoads(argv[1]);
    return 0;
}
