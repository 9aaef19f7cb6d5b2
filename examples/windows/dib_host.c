/* dib_host [FOLDER]: a Windows host that draws a picture with GDI and gives it to all of orv.dll.
 *
 *     x86_64-w64-mingw32-gcc -Iinclude dib_host.c -o dib_host.exe -lgdi32 -lmsimg32
 *     cl /Iinclude dib_host.c gdi32.lib msimg32.lib
 *
 * The library is loaded at run time, so that nothing is linked against it. Every restoration runs
 * on the main thread and once more on a second one; for each the program prints a hash of the
 * pixels and what the progress callback was told. With FOLDER it writes photo.bmp, greys.bmp and
 * restored.bmp there. Exit codes: 0 done, 1 failed.
 */
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "orv/orv.h"
#include "orv/orv_constants.h"

/* Three bytes a pixel give rows of 471 bytes, which a bitmap pads to 472. */
#define WIDTH 157
#define HEIGHT 113

/* The sixteen functions, as orv.h declares them. */
typedef struct {
    void (*setCallBack)(ORVCallBack);
    void* (*convert)(const BITMAPINFOHEADER*, const unsigned char*);
    void (*destroy)(void*);
    void (*getInfo)(void*, int*, int*);
    unsigned char* (*getData)(void*);
    void* (*fastRestoration)(void*, const char*, int, int, double, int, double, double,
                             const char*, int, int);
    void* (*fastDenoiser)(void*, const char*, int, int, double, int, double, double, double,
                          const char*, int, int);
    void* (*aosBarash)(void*, int, int, double, double, double, double, bool, bool);
    void* (*blur)(void*, double);
    void* (*homomorphic)(void*, double, int);
    void* (*retinex)(void*, double, double, double, int);
    void* (*shock)(void*, int, int, double);
    void* (*susan)(void*, int, double, double);
    void* (*wavelet)(void*, const char*, int, int);
    void* (*colorTransfer)(void*, void*);
    void* (*colorToGrey)(void*, void*);
} Library;

/* Finds one function. `slot` points to the pointer that takes its address. */
static bool take(HMODULE dll, const char* name, void* slot) {
    const FARPROC function = GetProcAddress(dll, name);

    memcpy(slot, &function, sizeof function);
    if (function == NULL) {
        fprintf(stderr, "dib_host: orv.dll has no %s\n", name);
    }
    return function != NULL;
}

/* LoadLibrary looks for orv.dll beside the program first. */
static bool loadLibrary(Library* orv) {
    const HMODULE dll = LoadLibraryA("orv.dll");

    if (dll == NULL) {
        fprintf(stderr, "dib_host: orv.dll: error %lu\n", GetLastError());
        return false;
    }
    return take(dll, "SetORVCallBack", &orv->setCallBack) &&
           take(dll, "ConvertORVImage", &orv->convert) &&
           take(dll, "DestroyORVImage", &orv->destroy) &&
           take(dll, "GetORVImageInfo", &orv->getInfo) &&
           take(dll, "GetORVImageData", &orv->getData) &&
           take(dll, "ORVFastRestoration", &orv->fastRestoration) &&
           take(dll, "ORVFastDenoiser", &orv->fastDenoiser) &&
           take(dll, "ORVIFAosBarashOp", &orv->aosBarash) &&
           take(dll, "ORVIFVanVieltBlurringIirOp", &orv->blur) &&
           take(dll, "ORVIHomomorphicOp", &orv->homomorphic) &&
           take(dll, "ORVRetinex", &orv->retinex) && take(dll, "ORVIShockOp", &orv->shock) &&
           take(dll, "ORVISusanRestoration", &orv->susan) &&
           take(dll, "ORVWaveletDenoising", &orv->wavelet) &&
           take(dll, "ORVISimpleColorTranfer", &orv->colorTransfer) &&
           take(dll, "ORVIColorToGreyTranfertOp", &orv->colorToGrey);
}

/* A bitmap whose pixels GDI draws on and this program reads. */
typedef struct {
    BITMAPINFO info;
    HDC canvas;
    HBITMAP bitmap;
    unsigned char* bits; /* rows from the bottom up, blue first, padded to 4 bytes */
} Dib;

static DWORD rowBytes(void) {
    return (WIDTH * 3 + 3) / 4 * 4;
}

static bool makeDib(Dib* dib) {
    BITMAPINFOHEADER* header = &dib->info.bmiHeader;
    void* bits = NULL;

    memset(dib, 0, sizeof *dib);
    header->biSize = sizeof *header;
    header->biWidth = WIDTH;
    header->biHeight = HEIGHT; /* the library takes no negative height */
    header->biPlanes = 1;
    header->biBitCount = 24;
    header->biCompression = BI_RGB;
    header->biSizeImage = rowBytes() * HEIGHT;
    dib->canvas = CreateCompatibleDC(NULL);
    dib->bitmap = CreateDIBSection(dib->canvas, &dib->info, DIB_RGB_COLORS, &bits, NULL, 0);
    dib->bits = bits;
    if (dib->bitmap == NULL) {
        fprintf(stderr, "dib_host: no DIB section: error %lu\n", GetLastError());
        return false;
    }
    SelectObject(dib->canvas, dib->bitmap);
    return true;
}

static void freeDib(Dib* dib) {
    DeleteDC(dib->canvas);
    DeleteObject(dib->bitmap);
}

static TRIVERTEX corner(LONG x, LONG y, COLORREF colour) {
    TRIVERTEX vertex = {x, y, 0, 0, 0, 0};

    vertex.Red = (COLOR16)(GetRValue(colour) << 8);
    vertex.Green = (COLOR16)(GetGValue(colour) << 8);
    vertex.Blue = (COLOR16)(GetBValue(colour) << 8);
    return vertex;
}

/* A sky that gets lighter, a disc, a block with an outline and a horizon. */
static void draw(const Dib* dib, COLORREF top, COLORREF bottom, COLORREF disc, COLORREF block) {
    const GRADIENT_RECT wholePicture = {0, 1};
    const HDC canvas = dib->canvas;
    TRIVERTEX corners[2];

    corners[0] = corner(0, 0, top);
    corners[1] = corner(WIDTH, HEIGHT, bottom);
    GradientFill(canvas, corners, 2, (void*)&wholePicture, 1, GRADIENT_FILL_RECT_V);
    SelectObject(canvas, GetStockObject(DC_BRUSH));
    SelectObject(canvas, GetStockObject(NULL_PEN));
    SetDCBrushColor(canvas, disc);
    Ellipse(canvas, 90, 12, 140, 62);
    SelectObject(canvas, GetStockObject(WHITE_PEN));
    SetDCBrushColor(canvas, block);
    Rectangle(canvas, 15, 45, 70, 100);
    MoveToEx(canvas, 0, 105, NULL);
    LineTo(canvas, WIDTH, 70);
    GdiFlush(); /* GDI may still be drawing when its functions return */
}

/* Noise as that of a weak sensor, straight into the rows. */
static void addNoise(const Dib* dib) {
    uint32_t random = 1;
    DWORD i;

    for (i = 0; i < dib->info.bmiHeader.biSizeImage; ++i) {
        int value;

        random = random * 1664525u + 1013904223u;
        value = dib->bits[i] + (int)(random >> 24) % 41 - 20;
        dib->bits[i] = (unsigned char)(value < 0 ? 0 : value > 255 ? 255 : value);
    }
}

/* What the callback was told since the last reset. */
static struct {
    int count;
    int last;
} progress;

/* A host would move its progress bar here. Windows' own convention, as that of a WNDPROC. */
static void ORV_CALLBACK onProgress(int percent) {
    ++progress.count;
    progress.last = percent;
}

/* One set of arguments for each restoration. */
static void* restore(const Library* orv, int which, void* photo, void* greys) {
    switch (which) {
        case 0:
            return orv->fastRestoration(photo, ORV_SCHEME_AOS, ORV_SOLVER_THOMAS, 1, 2.0, 5,
                                        0.7, 10.0, ORV_FLOW_PERONA_MALIK,
                                        ORV_GRADIENT_NORM_CENTRAL, 0);
        case 1:
            return orv->fastDenoiser(photo, ORV_SCHEME_LOD, ORV_SOLVER_CG, 2, 1.0, 20, 0.7, 8.0,
                                     0.1, ORV_FLOW_VARIATIONAL, ORV_GRADIENT_NORM_MINMOD, 0);
        case 2:
            return orv->aosBarash(photo, 2, 5, 0.5, 0.2, 0.5, 10.0, true, false);
        case 3:
            return orv->blur(photo, 2.5);
        case 4:
            return orv->homomorphic(photo, 1.5, ORV_HOMOMORPHIC_COMPRESSED);
        case 5:
            return orv->retinex(photo, 2.2, 0.0001, 0.1, 3);
        case 6:
            return orv->shock(photo, ORV_SHOCK_DIFFUSIVE_ARCTAN, 5, 0.2);
        case 7:
            return orv->susan(photo, 1, 20.0, 2.0);
        case 8:
            return orv->wavelet(photo, ORV_SHRINKAGE_BROWNIAN, 3, ORV_WAVELET_DAUBECHIES6);
        case 9:
            return orv->colorTransfer(greys, photo);
        default:
            /* Draws from a generator that each thread starts at the same state. */
            return orv->colorToGrey(greys, photo);
    }
}

static const char* const kNames[] = {"ORVFastRestoration",
                                     "ORVFastDenoiser",
                                     "ORVIFAosBarashOp",
                                     "ORVIFVanVieltBlurringIirOp",
                                     "ORVIHomomorphicOp",
                                     "ORVRetinex",
                                     "ORVIShockOp",
                                     "ORVISusanRestoration",
                                     "ORVWaveletDenoising",
                                     "ORVISimpleColorTranfer",
                                     "ORVIColorToGreyTranfertOp"};
#define RESTORATIONS ((int)(sizeof kNames / sizeof kNames[0]))

/* FNV-1a of the pixels. */
static uint64_t hashOf(const unsigned char* bytes, size_t count) {
    uint64_t hash = 0xcbf29ce484222325u;
    size_t i;

    for (i = 0; i < count; ++i) {
        hash = (hash ^ bytes[i]) * 0x100000001b3u;
    }
    return hash;
}

/* Copies the pixels of a handle, whose rows have no padding, into a bitmap. */
static void copyPixels(const Library* orv, void* image, const Dib* dib) {
    const unsigned char* pixels = orv->getData(image);
    int y;

    for (y = 0; y < HEIGHT; ++y) {
        memcpy(dib->bits + (size_t)y * rowBytes(), pixels + (size_t)y * WIDTH * 3, WIDTH * 3);
    }
}

/* What a thread works on. */
typedef struct {
    const Library* orv;
    const Dib* photo;
    const Dib* greys;
    const Dib* restored; /* takes the result of the first restoration */
    bool done;
} Task;

static bool runOne(const Task* task, int which, void* photo, void* greys) {
    const Library* orv = task->orv;
    void* result;
    int width = 0;
    int height = 0;

    memset(&progress, 0, sizeof progress);
    orv->setCallBack(onProgress); /* before each call, or the range stays narrowed */
    fflush(stdout);               /* the library may print, from buffers of its own */
    result = restore(orv, which, photo, greys);
    if (result == NULL) {
        fprintf(stderr, "dib_host: %s failed\n", kNames[which]);
        return false;
    }
    orv->getInfo(result, &width, &height);
    printf("%-26s %d x %d  %016" PRIx64 "  %4d reports, last %d\n", kNames[which], width,
           height, hashOf(orv->getData(result), (size_t)width * (size_t)height * 3),
           progress.count, progress.last);
    if (which == 0) {
        copyPixels(orv, result, task->restored);
    }
    orv->destroy(result);
    return true;
}

static DWORD WINAPI runAll(void* argument) {
    Task* task = argument;
    const Library* orv = task->orv;
    void* photo = orv->convert(&task->photo->info.bmiHeader, task->photo->bits);
    void* greys = orv->convert(&task->greys->info.bmiHeader, task->greys->bits);
    int which;

    task->done = photo != NULL && greys != NULL;
    for (which = 0; which < RESTORATIONS && task->done; ++which) {
        task->done = runOne(task, which, photo, greys);
    }
    orv->setCallBack(NULL);
    orv->destroy(greys);
    orv->destroy(photo);
    return 0;
}

/* Calls may come from any thread, one at a time: this one waits meanwhile. */
static bool runOnSecondThread(Task* task) {
    HANDLE thread;

    task->done = false;
    thread = CreateThread(NULL, 0, runAll, task, 0, NULL);
    if (thread == NULL) {
        fprintf(stderr, "dib_host: no second thread: error %lu\n", GetLastError());
        return false;
    }
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    return task->done;
}

static bool writeBmp(const char* folder, const char* name, const Dib* dib) {
    const BITMAPINFOHEADER* header = &dib->info.bmiHeader;
    BITMAPFILEHEADER fileHeader = {0};
    char path[MAX_PATH + 1];
    FILE* file;
    bool done;

    fileHeader.bfType = 0x4D42; /* BM */
    fileHeader.bfOffBits = sizeof fileHeader + sizeof *header;
    fileHeader.bfSize = fileHeader.bfOffBits + header->biSizeImage;
    snprintf(path, sizeof path, "%s\\%s", folder, name);
    file = fopen(path, "wb");
    if (file == NULL) {
        perror(path);
        return false;
    }
    done = fwrite(&fileHeader, sizeof fileHeader, 1, file) == 1 &&
           fwrite(header, sizeof *header, 1, file) == 1 &&
           fwrite(dib->bits, 1, header->biSizeImage, file) == header->biSizeImage;
    return fclose(file) == 0 && done;
}

int main(int argc, char** argv) {
    Library orv;
    Dib photo;
    Dib greys;
    Dib restored;
    Task task = {&orv, &photo, &greys, &restored, false};
    bool done;

    if (!loadLibrary(&orv) || !makeDib(&photo) || !makeDib(&greys) || !makeDib(&restored)) {
        return 1;
    }
    draw(&photo, RGB(40, 90, 200), RGB(230, 190, 140), RGB(250, 220, 60), RGB(130, 40, 30));
    draw(&greys, RGB(60, 60, 60), RGB(220, 220, 220), RGB(180, 180, 180), RGB(90, 90, 90));
    addNoise(&photo);

    printf("main thread\n");
    runAll(&task);
    done = task.done;
    if (done) {
        printf("second thread\n");
        done = runOnSecondThread(&task);
    }
    if (done && argc > 1) {
        done = writeBmp(argv[1], "photo.bmp", &photo) &&
               writeBmp(argv[1], "greys.bmp", &greys) &&
               writeBmp(argv[1], "restored.bmp", &restored);
    }
    freeDib(&restored);
    freeDib(&greys);
    freeDib(&photo);
    return done ? 0 : 1;
}
