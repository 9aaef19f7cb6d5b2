/** @file
 * The C interface of ORV, an image restoration engine. C99 and C++.
 *
 * A host turns a 24-bit bitmap into an opaque image handle, calls one restoration on the
 * handle, receives a new handle with the result, reads its pixels and destroys both:
 *
 *     #include <string.h>
 *
 *     void* photo = ConvertORVImage(&header, pixels);
 *     void* result = ORVFastRestoration(photo, "AOS", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0);
 *     if (result != NULL) {
 *         memcpy(out, GetORVImageData(result), 3 * (size_t)width * height);
 *     }
 *     DestroyORVImage(result);
 *     DestroyORVImage(photo);
 *
 * @par Handles
 * An image handle points at an image of the library: 8 bits a channel, three channels. The caller
 * owns every handle that a function returns and frees it with DestroyORVImage. A restoration never
 * changes or keeps the handle it is given. A pointer that is neither null nor a live handle must
 * not be passed.
 *
 * @par Byte and row order
 * Bitmaps pass straight through: byte 0 of a pixel (blue in a Windows bitmap) stays byte 0 and is
 * the library's first channel, and the first stored row is row 0. What comes back has the order of
 * what went in; only the padding of the rows is gone.
 *
 * @par Errors
 * A null handle is the only sign of failure: there is no error code, no message and no exception.
 * Every function that returns a handle also returns null when memory runs out; one alone may end
 * the process instead, ORVWaveletDenoising.
 *
 * @par Results
 * Fractions of grey levels are cut off, not rounded: a restoration that changes nothing may still
 * darken a sample by one level.
 *
 * @par Threads
 * The library starts none and takes no locks; calls must not overlap, those on different handles
 * included. The callback runs on the calling thread, inside the call.
 *
 * Numbers for the arguments stand in orv_constants.h.
 */
#ifndef ORV_ORV_H
#define ORV_ORV_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

/** @def ORV_EXPORT
 * Marks the functions of the shared library. */
/** @def ORV_CALL
 * The calling convention of the functions: `__cdecl` on Windows, nothing elsewhere. Pointers to
 * them need it where a compiler option sets another one. */
/** @def ORV_CALLBACK
 * The calling convention of a callback: `__stdcall` on Windows, nothing elsewhere. */
#if defined(_WIN32)
#if defined(ORV_BUILDING_LIBRARY)
#define ORV_EXPORT __declspec(dllexport)
#else
#define ORV_EXPORT __declspec(dllimport)
#endif
#define ORV_CALL __cdecl
#define ORV_CALLBACK __stdcall
#else
#define ORV_EXPORT __attribute__((visibility("default")))
#define ORV_CALL
#define ORV_CALLBACK
#endif

#if defined(_WIN32)
#include <windows.h>
#else
/** The header of a device-independent bitmap, laid out as in a file: 40 bytes, no padding, no
 * alignment. Only biWidth, biHeight and biBitCount are read. On Windows it comes from windows.h. */
#pragma pack(push, 1)
typedef struct tagBITMAPINFOHEADER {
    uint32_t biSize;         /**< 40; not read */
    int32_t biWidth;         /**< pixels, at least 1 */
    int32_t biHeight;        /**< pixels, at least 1: no marker of a row order */
    uint16_t biPlanes;       /**< not read */
    uint16_t biBitCount;     /**< has to be 24 */
    uint32_t biCompression;  /**< not read */
    uint32_t biSizeImage;    /**< not read */
    int32_t biXPelsPerMeter; /**< not read */
    int32_t biYPelsPerMeter; /**< not read */
    uint32_t biClrUsed;      /**< not read */
    uint32_t biClrImportant; /**< not read */
} BITMAPINFOHEADER;
#pragma pack(pop)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @name Progress
 * @{ */

/** Receives progress in the scale 0 to 100.
 *
 * Values may jump, repeat, fall, pass 100 or end before it: the return of the call is the end. It
 * must not call the library.
 *
 * @param percent           how far the call is */
typedef void(ORV_CALLBACK* ORVCallBack)(int percent);

/** Installs a progress callback and sets the reporting range to 0 to 100.
 *
 * Nothing else resets the range. An operation narrows it while it runs and leaves it narrowed,
 * so call this before every operation whose progress is to run over the whole scale. These report:
 * diffusion with the "AOS" scheme, AOS deblurring, the homomorphic filter in mode 8, SUSAN smoothing
 * and the transfer of colours between two colour pictures.
 *
 * @param callback          the function to call; null turns reporting off */
ORV_EXPORT void ORV_CALL SetORVCallBack(ORVCallBack callback);

/** @} */
/** @name Images
 * @{ */

/** Makes an image from a 24-bit bitmap. The pixels are copied.
 *
 * @param header            biBitCount has to be 24, biWidth and biHeight at least 1. No other field
 *                          is read
 * @param pixels            biHeight rows of biWidth times 3 bytes, each row padded to a multiple of
 *                          4 bytes
 *
 * @return a new handle, or null when
 * - an argument is null;
 * - biBitCount is not 24;
 * - biWidth or biHeight is below 1, or the picture is too large for memory. */
ORV_EXPORT void* ORV_CALL ConvertORVImage(const BITMAPINFOHEADER* header,
                                          const unsigned char* pixels);

/** Frees an image and its pixels.
 *
 * @param image             a handle; null is ignored */
ORV_EXPORT void ORV_CALL DestroyORVImage(void* image);

/** Writes the width and height of an image, in pixels. With any null argument nothing is written.
 *
 * @param image             a handle
 * @param width             where the width goes
 * @param height            where the height goes */
ORV_EXPORT void ORV_CALL GetORVImageInfo(void* image, int* width, int* height);

/** Gives access to the pixels of an image: height rows of 3 times width bytes without padding.
 *
 * @param image             a handle
 *
 * @return the first byte, 32-byte aligned. The pixels belong to the image, may be written to, and
 * are valid until it is destroyed. Null for a null handle. */
ORV_EXPORT unsigned char* ORV_CALL GetORVImageData(void* image);

/** @} */
/** @name Diffusion
 * @{ */

/** Nonlinear diffusion: smooths regions and keeps edges.
 *
 * Results are not clamped: a sample that leaves 0 to 255 keeps its low byte. Solver 41 writes its
 * work rows to the standard output, several times width times height numbers for each pixel: it is
 * for pictures of a few hundred pixels.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param scheme            how time is stepped. The first of the keywords "2DSemi", "2DImplicit",
 *                          "LOD", "AFI", "ADI", "AOS", "AMOS" that occurs anywhere in the text
 *                          decides; with none of them it is "AOS"
 * @param solverId          linear solver, 0 to 41, see ORV_SOLVER_ in orv_constants.h; 0 is direct,
 *                          which with "2DSemi" and "2DImplicit" takes 8 bytes times the width for
 *                          each pixel
 * @param iterations        time steps. Every step starts from the source, so with sigma of at most
 *                          0.05 and solver 0 more steps give the result of one; below 1 gives a copy
 *                          of the source
 * @param tau               time step, pixels squared; above 0, from 0.25 (slight) to 50 (strong)
 * @param solverIterations  most iterations a solve may take, for iterative solvers, and the restart
 *                          length of the solvers 24 to 30 and 32, with which each iteration takes
 *                          more memory and time than the one before. The solvers 1 to 3, 21 and 22
 *                          use all of them, so does every solver that breaks down
 * @param sigma             scale of the presmoothing, pixels; 0.05 or less for none. With it the
 *                          edges of the first channel steer all three
 * @param contrast          grey levels; slopes well above it are kept as edges
 * @param flow              what is diffused. The first of the keywords "PM" (Perona and Malik),
 *                          "WE2", "WE3", "WE4" (Weickert), "WE" (the same as "WE4"), "VAR"
 *                          (variational), "TV" (total variation) that occurs anywhere in the text
 *                          decides; with none of them it is "PM"
 * @param gradientNormId    how slopes are measured, 0 to 5, see ORV_GRADIENT_NORM_
 * @param cflSubsteps       not 0 to split the explicit half steps of "ADI", "AMOS" and "2DImplicit"
 *                          so that they stay stable
 *
 * @return a new handle with the size of the source, or null when
 * - image, scheme or flow is null, or a double is not finite;
 * - solverId is outside 0 to 41, or it is 41 with another scheme than "2DSemi" or "2DImplicit";
 * - gradientNormId is outside 0 to 5;
 * - the width or the height is 1 with "ADI", "AMOS", "2DSemi" or "2DImplicit";
 * - the pixels are more than an int counts with "2DSemi" or "2DImplicit";
 * - cflSubsteps is not 0, the scheme splits its steps, and tau asks for more steps than an int
 *   holds. */
ORV_EXPORT void* ORV_CALL ORVFastRestoration(void* image, const char* scheme, int solverId,
                                             int iterations, double tau, int solverIterations,
                                             double sigma, double contrast, const char* flow,
                                             int gradientNormId, int cflSubsteps);

/** Nonlinear diffusion that is drawn back toward the source, for removing noise.
 *
 * As ORVFastRestoration, with the differences that are told here.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param scheme            as in ORVFastRestoration
 * @param solverId          0 stands for 29, which may break down above 2 solverIterations: lines of
 *                          bytes 0 then, and more with small tau. Others as in ORVFastRestoration
 * @param iterations        as in ORVFastRestoration; with 0 standing for 29, more steps may change
 *                          the result with any solver
 * @param tau               as in ORVFastRestoration
 * @param solverIterations  as in ORVFastRestoration
 * @param sigma             as in ORVFastRestoration
 * @param contrast          as in ORVFastRestoration
 * @param fidelity          weight of the pull toward the source, 0 (none) and up; has to be finite
 * @param flow              with no keyword found it is "VAR"
 * @param gradientNormId    as in ORVFastRestoration
 * @param cflSubsteps       accepted and ignored: explicit half steps are always split
 *
 * @return a new handle with the size of the source, or null for the reasons of ORVFastRestoration;
 * the last of them, a tau that asks for too many steps, holds whatever cflSubsteps is. */
ORV_EXPORT void* ORV_CALL ORVFastDenoiser(void* image, const char* scheme, int solverId,
                                          int iterations, double tau, int solverIterations,
                                          double sigma, double contrast, double fidelity,
                                          const char* flow, int gradientNormId,
                                          int cflSubsteps);

/** Deblurring and denoising by additive operator splitting with a data term.
 *
 * Each iteration solves (2 - 4 tau d2/dx2) and (2 - 4 tau d2/dy2) line by line for the right side
 * u - lambda tau (V - W), and adds the two. W is the source, blurred once unless keepObserved; V is
 * the source blurred twice an iteration. u stays the source, so iterations only blur V further. The
 * two darkest lines stand at the right and lower border: the last link of each system is 0.
 *
 * Results are limited to 0 to 255. Reports progress, which may pass 100.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param iterations        from 1; below 1 gives a copy of the source
 * @param kernel            weights of the blur: 2 for 1 2 9 2 1, 5 for 1 3 4 3 1, 7 for
 *                          1 3 5 6 5 3 1, any other number for 1 2 1
 * @param tau               time step, pixels squared; 0 gives the source but for two mirrored
 *                          samples at each end of a line
 * @param lambda            weight of the data term; 0 makes kernel and iterations irrelevant
 * @param sigma             scale of the regularisation, pixels; runs, but does not change the result
 * @param edgeContrast      grey levels; runs, but does not change the result, but for 0, which makes
 *                          it black
 * @param keepObserved      true to take the source as it is for W
 * @param colorPath         has no effect on the result
 *
 * @return a new handle with the size of the source, or null when image is null, or the width or the
 * height is below 6. */
ORV_EXPORT void* ORV_CALL ORVIFAosBarashOp(void* image, int iterations, int kernel, double tau,
                                           double lambda, double sigma, double edgeContrast,
                                           bool keepObserved, bool colorPath);

/** @} */
/** @name Filters
 * @{ */

/** Recursive Gaussian blur, whose running time does not grow with sigma.
 *
 * Lines start from their first three samples as they stand, so that noise at the left and upper
 * border grows with sigma. Results are not clamped: a sample that leaves 0 to 255 keeps its low byte.
 * Writes the coefficients of the recursion to the standard output, three lines a call.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param sigma             standard deviation, pixels; below 0.5 counts as 0.5
 *
 * @return a new handle with the size of the source, or null when image is null, or the width or the
 * height is below 3. */
ORV_EXPORT void* ORV_CALL ORVIFVanVieltBlurringIirOp(void* image, double sigma);

/** Homomorphic filter: parts a picture into illumination, which is its logarithm blurred with a
 * standard deviation of 8 pixels, and reflectance.
 *
 * A sample of 0 has no logarithm: a channel that holds one comes back all 0. Results are not
 * clamped: a sample that leaves 0 to 255, as logarithms below 0 do, keeps its low byte. Mode 8
 * reports progress, each channel from 0 on, so that the values end at a third of the range.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param gamma             how far mode 8 compresses the illumination: above 1 brightens shadows, 1
 *                          gives the source but for rounding
 * @param mode              what is returned: 1 reflectance, 2 its logarithm, 4 illumination, 5 its
 *                          logarithm, 8 the picture with compressed illumination; any other number
 *                          is 8
 *
 * @return a new handle with the size of the source, or null when image is null, or the width or the
 * height is below 3. */
ORV_EXPORT void* ORV_CALL ORVIHomomorphicOp(void* image, double gamma, int mode);

/** Variational Retinex: estimates the illumination over a pyramid and takes its power out.
 *
 * Results are limited to 0 to 255.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param gamma             the illumination L becomes L to the power 1 / gamma; 1 gives the source
 * @param alpha             weight of the distance between illumination and picture; 0.0001 is a good
 *                          value, large ones darken
 * @param beta              weight of the smoothness of the reflectance; 0.1 is a good value
 * @param levels            levels of the pyramid, each half as wide and high as the one before
 *
 * @return a new handle with the size of the source, or null when
 * - image is null or gamma is 0;
 * - levels is below 1, or so many that the coarsest level would be empty. */
ORV_EXPORT void* ORV_CALL ORVRetinex(void* image, double gamma, double alpha, double beta,
                                     int levels);

/** Shock filter: sharpens by moving grey levels away from the places where the second derivative
 * along the gradient changes its sign.
 *
 * Results are limited to 0 to 255; the outermost pixels stay.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param method            0 sign, 1 sign with diffusion across the gradient, 2 arctangent, which
 *                          hardens with the iterations, 3 arctangent with diffusion; any other
 *                          number is 0
 * @param iterations        time steps; below 1 gives a copy of the source
 * @param timeStep          length of a step; from about 0.7 on results flicker
 *
 * @return a new handle with the size of the source, or null when image is null. */
ORV_EXPORT void* ORV_CALL ORVIShockOp(void* image, int method, int iterations, double timeStep);

/** SUSAN smoothing: each sample becomes the mean of its neighbours in a disc, weighted by distance
 * and by difference in brightness. The sample itself has no weight.
 *
 * Reports progress once a pass and once a column.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param iterations        passes; below 1 gives a copy of the source
 * @param threshold         grey levels; neighbours that differ by much more have no say. With 0, or
 *                          when no neighbour has a say, the sample becomes 0
 * @param sigma             spatial scale of the weights, pixels
 *
 * @return a new handle with the size of the source, or null when image is null. */
ORV_EXPORT void* ORV_CALL ORVISusanRestoration(void* image, int iterations, double threshold,
                                               double sigma);

/** @} */
/** @name Wavelets
 * @{ */

/** Wavelet shrinkage: takes noise out of the detail bands of a wavelet transform.
 *
 * A picture whose longer side is not a power of two, or whose shorter side would be odd at one of
 * the levels, is padded with zeros to a square. That dims its border and makes the estimate of the
 * noise too low: none at all when the picture covers less than about half of the square. Mirror such
 * a picture out to a power of two first.
 * Results are not clamped: a sample that leaves 0 to 255 keeps its low byte.
 * "Brownian" writes lines to the standard output. When a working array cannot be had, a line goes
 * to the standard error stream and the process ends with status 1.
 *
 * @param image             source, 8-bit samples 0 to 255
 * @param algorithm         how thresholds are found. The first of the keywords "SureShrink",
 *                          "VisuShrink", "Brownian" that occurs anywhere in the text decides; with
 *                          none of them it is "SureShrink"
 * @param levels            levels of the transform; negative for as many as the size allows, and
 *                          more than that counts as that, with a line on the standard error stream.
 *                          0, or a picture too small for any, gives a copy of the source
 * @param wavelet           ORV_WAVELET_, 0 to 5
 *
 * @return a new handle with the size of the source, or null when image or algorithm is null, or
 * wavelet is outside 0 to 5. */
ORV_EXPORT void* ORV_CALL ORVWaveletDenoising(void* image, const char* algorithm, int levels,
                                              int wavelet);

/** @} */
/** @name Colours
 * @{ */

/** Gives a picture the mean and the deviation of the colours of another one, in a space of
 * decorrelated colours.
 *
 * A channel of that space without deviation takes the mean of style, so a grey source is tinted.
 * Results are limited to 0 to 255. Reports progress.
 *
 * @param source            the picture that is recoloured
 * @param style             the picture whose colours it takes, of any size
 *
 * @return a new handle with the size of source, or null when either handle is null. */
ORV_EXPORT void* ORV_CALL ORVISimpleColorTranfer(void* source, void* style);

/** Gives a grey picture the colours of another one: each pixel takes the colour of the swatch of
 * colour whose brightness and contrast are nearest to its surroundings.
 *
 * Swatches lie at random places, drawn from a generator that every thread starts at the same state
 * and that no call sets back: a second call gives another picture. A black pixel has no logarithm:
 * a swatch that holds one is passed over, and a pixel of grey near one takes the first swatch.
 * Results are limited to 0 to 255.
 *
 * @param grey              the picture that receives colour
 * @param colour            the picture that gives it
 *
 * @return a new handle with the size of grey, or null when either handle is null, or the width or
 * the height of colour is below 11. */
ORV_EXPORT void* ORV_CALL ORVIColorToGreyTranfertOp(void* grey, void* colour);

/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ORV_ORV_H */
