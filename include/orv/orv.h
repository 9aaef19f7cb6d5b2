/* ORV, an image restoration engine: the C interface. C99 and C++.
 *
 * A host turns a 24-bit bitmap into an opaque image handle, calls one restoration on the
 * handle, receives a new handle with the result, reads its pixels and destroys both:
 *
 *     void* photo = ConvertORVImage(&header, pixels);
 *     void* result = ORVFastRestoration(photo, "AOS", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0);
 *     if (result != NULL) {
 *         memcpy(out, GetORVImageData(result), 3 * width * height);
 *     }
 *     DestroyORVImage(result);
 *     DestroyORVImage(photo);
 *
 * Handles. An image handle points at an image of the library: 8 bits a channel, three channels.
 * The caller owns every handle that a function returns and frees it with DestroyORVImage. A
 * restoration never changes or keeps the handle it is given. A pointer that is neither null nor
 * a live handle must not be passed.
 *
 * Byte and row order. Bitmaps pass straight through: byte 0 of a pixel (blue in a Windows
 * bitmap) stays byte 0 and is the library's first channel, and the first stored row is row 0.
 * What comes back has the order of what went in; only the padding of the rows is gone.
 *
 * Errors. A null handle is the only sign of failure: there is no error code, no message and no
 * exception. Every function that returns a handle also returns null when memory runs out.
 *
 * Threads. The library starts none and takes no locks; calls must not overlap, those on
 * different handles included. The callback runs on the calling thread, inside the call.
 *
 * Numbers for the arguments stand in orv_constants.h.
 */
#ifndef ORV_ORV_H
#define ORV_ORV_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

/* ORV_EXPORT marks the functions of the shared library, ORV_CALLBACK the calling convention of
 * a callback. */
#if defined(_WIN32)
#if defined(ORV_BUILDING_LIBRARY)
#define ORV_EXPORT __declspec(dllexport)
#else
#define ORV_EXPORT __declspec(dllimport)
#endif
#define ORV_CALLBACK __stdcall
#else
#define ORV_EXPORT __attribute__((visibility("default")))
#define ORV_CALLBACK
#endif

#if defined(_WIN32)
#include <windows.h>
#else
/* The header of a device-independent bitmap, laid out as in a file: 40 bytes, no padding, no
 * alignment. Only biWidth, biHeight and biBitCount are read. */
#pragma pack(push, 1)
typedef struct tagBITMAPINFOHEADER {
    uint32_t biSize;        /* 40 */
    int32_t biWidth;        /* pixels, at least 1 */
    int32_t biHeight;       /* pixels, at least 1: no marker of a row order */
    uint16_t biPlanes;      /* not read */
    uint16_t biBitCount;    /* has to be 24 */
    uint32_t biCompression; /* not read, nor is anything below */
    uint32_t biSizeImage;
    int32_t biXPelsPerMeter;
    int32_t biYPelsPerMeter;
    uint32_t biClrUsed;
    uint32_t biClrImportant;
} BITMAPINFOHEADER;
#pragma pack(pop)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Receives progress in the scale 0 to 100. Values may jump, repeat and pass 100. It must not
 * call the library. */
typedef void(ORV_CALLBACK* ORVCallBack)(int percent);

/* Installs a progress callback and sets the reporting range to 0 to 100; null turns reporting
 * off.
 *
 * Nothing else resets the range. An operation narrows it while it runs and leaves it narrowed,
 * so call this before every operation whose progress is to run over the whole scale. Of the
 * restorations of this version, those with the "AOS" scheme report. */
ORV_EXPORT void SetORVCallBack(ORVCallBack callback);

/* Makes an image from a 24-bit bitmap. The pixels are copied.
 *
 * header:  biBitCount has to be 24, biWidth and biHeight at least 1. No other field is read.
 * pixels:  biHeight rows of biWidth times 3 bytes, each row padded to a multiple of 4 bytes.
 *
 * Returns a new handle, or null when
 * - an argument is null;
 * - biBitCount is not 24;
 * - biWidth or biHeight is below 1, or the picture is too large for memory. */
ORV_EXPORT void* ConvertORVImage(const BITMAPINFOHEADER* header, const unsigned char* pixels);

/* Frees an image and its pixels. A null handle is ignored. */
ORV_EXPORT void DestroyORVImage(void* image);

/* Writes the width and height of an image, in pixels. With any null argument nothing is
 * written. */
ORV_EXPORT void GetORVImageInfo(void* image, int* width, int* height);

/* The pixels of an image: height rows of 3 times width bytes without padding, 32-byte aligned.
 * They belong to the image, may be written to, and are valid until it is destroyed. Null for a
 * null handle. */
ORV_EXPORT unsigned char* GetORVImageData(void* image);

/* Nonlinear diffusion: smooths regions and keeps edges.
 *
 * image:             source, 8-bit samples 0 to 255
 * scheme:            how time is stepped. The first of the keywords "2DSemi", "2DImplicit",
 *                    "LOD", "AFI", "ADI", "AOS", "AMOS" that occurs anywhere in the text
 *                    decides; with none of them it is "AOS"
 * solverId:          linear solver, 0 to 41, see ORV_SOLVER_ in orv_constants.h; 0 is direct
 * iterations:        time steps. Every step starts from the source, so with sigma of at most
 *                    0.05 and solver 0 more steps give the result of one; below 1 gives a copy
 *                    of the source
 * tau:               time step, pixels squared; above 0, from 0.25 (slight) to 50 (strong)
 * solverIterations:  most iterations a solve may take, for iterative solvers; with the solvers
 *                    27 to 30 each one takes more memory and time than the one before
 * sigma:             scale of the presmoothing, pixels; 0.05 or less for none
 * contrast:          grey levels; slopes well above it are kept as edges
 * flow:              what is diffused. The first of the keywords "PM" (Perona and Malik),
 *                    "WE2", "WE3", "WE4" (Weickert), "WE" (the same as "WE4"), "VAR"
 *                    (variational), "TV" (total variation) that occurs anywhere in the text
 *                    decides; with none of them it is "PM"
 * gradientNormId:    how slopes are measured, 0 to 5, see ORV_GRADIENT_NORM_
 * cflSubsteps:       not 0 to split the explicit half steps of "ADI", "AMOS" and "2DImplicit"
 *                    so that they stay stable
 *
 * Results are not clamped: a sample that leaves 0 to 255 keeps its low byte.
 *
 * Returns a new handle with the size of the source, or null when
 * - image, scheme or flow is null, or a double is not finite;
 * - solverId is outside 0 to 41, or its solver has not come yet or cannot work on the matrices
 *   of the scheme;
 * - gradientNormId is outside 0 to 5;
 * - the width or the height is 1 with "ADI", "AMOS", "2DSemi" or "2DImplicit";
 * - the pixels are more than an int counts with "2DSemi" or "2DImplicit";
 * - cflSubsteps is not 0, the scheme splits its steps, and tau asks for more steps than an int
 *   holds. */
ORV_EXPORT void* ORVFastRestoration(void* image, const char* scheme, int solverId,
                                    int iterations, double tau, int solverIterations,
                                    double sigma, double contrast, const char* flow,
                                    int gradientNormId, int cflSubsteps);

/* Nonlinear diffusion that is drawn back toward the source, for removing noise.
 *
 * As ORVFastRestoration, with these differences:
 *
 * solverId:          0 stands for 29, which may break down above 2 solverIterations: lines of
 *                    bytes 0 then, and more with small tau
 * fidelity:          weight of the pull toward the source, 0 (none) and up; has to be finite
 * flow:              with no keyword found it is "VAR"
 * cflSubsteps:       accepted and ignored: explicit half steps are always split, so the last
 *                    reason for null holds whatever its value */
ORV_EXPORT void* ORVFastDenoiser(void* image, const char* scheme, int solverId, int iterations,
                                 double tau, int solverIterations, double sigma,
                                 double contrast, double fidelity, const char* flow,
                                 int gradientNormId, int cflSubsteps);

/* The restorations below are declared so that hosts can be built against the whole interface.
 * Each returns null in this version, whatever its arguments, and reads none of them. */

/* Deblurring by additive operator splitting. Returns null in this version.
 *
 * iterations:        time steps
 * kernel:            blur kernel number
 * tau:               time step
 * lambda:            weight of the data term
 * sigma:             scale of the regularisation, pixels
 * edgeContrast:      grey levels
 * keepObserved:      true to take the source as it is for the data term, without a first blur
 * colorPath:         has no effect on the result */
ORV_EXPORT void* ORVIFAosBarashOp(void* image, int iterations, int kernel, double tau,
                                  double lambda, double sigma, double edgeContrast,
                                  bool keepObserved, bool colorPath);

/* Recursive Gaussian blur. Returns null in this version.
 *
 * sigma:             standard deviation, pixels */
ORV_EXPORT void* ORVIFVanVieltBlurringIirOp(void* image, double sigma);

/* Homomorphic filter. Returns null in this version.
 *
 * gamma:             compression exponent
 * mode:              what is returned: 1, 2, 4, 5 or 8 (the compressed picture) */
ORV_EXPORT void* ORVIHomomorphicOp(void* image, double gamma, int mode);

/* Variational Retinex. Returns null in this version.
 *
 * gamma:             exponent
 * alpha, beta:       weights of the penalty terms
 * levels:            levels of the pyramid */
ORV_EXPORT void* ORVRetinex(void* image, double gamma, double alpha, double beta, int levels);

/* Shock filter. Returns null in this version.
 *
 * method:            term, 0 to 3
 * iterations:        time steps
 * timeStep:          length of a step */
ORV_EXPORT void* ORVIShockOp(void* image, int method, int iterations, double timeStep);

/* SUSAN smoothing. Returns null in this version.
 *
 * iterations:        passes
 * threshold:         brightness scale, grey levels
 * sigma:             spatial scale, pixels */
ORV_EXPORT void* ORVISusanRestoration(void* image, int iterations, double threshold,
                                      double sigma);

/* Wavelet shrinkage. Returns null in this version.
 *
 * algorithm:         the first of "SureShrink", "VisuShrink", "Brownian" that occurs in
 *                    the text
 * levels:            levels of the transform
 * wavelet:           filter number, 0 to 5 */
ORV_EXPORT void* ORVWaveletDenoising(void* image, const char* algorithm, int levels,
                                     int wavelet);

/* Gives source the colours of style, another image handle. Returns null in this version. */
ORV_EXPORT void* ORVISimpleColorTranfer(void* source, void* style);

/* Gives the grey picture grey the colours of colour, another image handle. Returns null in this
 * version. */
ORV_EXPORT void* ORVIColorToGreyTranfertOp(void* grey, void* colour);

#ifdef __cplusplus
}
#endif

#endif /* ORV_ORV_H */
