/* restore_bmp IN.bmp OUT.bmp: takes noise out of a 24-bit BMP. A whole host program in C99.
 *
 *     cc restore_bmp.c -o restore_bmp $(pkg-config --cflags --libs orv)
 *
 * process() and restore() show what a host does: convert a bitmap to a handle, restore, read the
 * pixels of the result, destroy the handles. The rest is care: no file, however damaged, is read
 * out of bounds, a message names the value that is wrong, and OUT.bmp is the whole result or
 * what it was before. Exit codes: 0 done, 1 failed, 2 usage.
 */
#ifndef _WIN32
#define _POSIX_C_SOURCE 200112L /* isatty, fileno */
#endif
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "orv/orv.h"
#include "orv/orv_constants.h"
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

/* For noise of about 20 grey levels. Less noise asks for a lower contrast. */
#define PASSES 3
#define TIME_STEP 2.0    /* pixels squared: how far a pass smooths */
#define PRESMOOTHING 0.7 /* pixels: keeps a noisy sample from passing for an edge */
#define CONTRAST 4.0     /* grey levels: slopes well above it are kept as edges */

/* A BMP is a file header, an information header and the rows, each padded to 4 bytes. */
#define FILE_HEADER 14
#define INFO_HEADER 40
#define HEADERS (FILE_HEADER + INFO_HEADER)

typedef struct {
    unsigned char head[HEADERS]; /* as in the file */
    int32_t width;
    int32_t height; /* above 0, as the library wants it; top-down files store it negative */
    uint32_t size;  /* bytes of all rows with padding */
    unsigned char* rows; /* in the order of the file */
} Picture;

/* Prints what is wrong with a file and returns false. */
static bool fail(const char* path, const char* format, ...) {
    va_list values;

    fprintf(stderr, "restore_bmp: %s: ", path);
    va_start(values, format);
    vfprintf(stderr, format, values);
    va_end(values);
    fputc('\n', stderr);
    return false;
}

/* Numbers in a BMP are little-endian on every machine, and may lie on odd addresses. */
static unsigned get16(const unsigned char* at) {
    return at[0] | (unsigned)at[1] << 8;
}

static uint32_t get32(const unsigned char* at) {
    return get16(at) | (uint32_t)get16(at + 2) << 16;
}

static void put32(unsigned char* at, uint32_t value) {
    int i;
    for (i = 0; i < 4; ++i) {
        at[i] = (unsigned char)(value >> 8 * i & 0xFF);
    }
}

/* Checks the fields that tell what kind of BMP this is. */
static bool checkKind(const char* path, Picture* picture) {
    const unsigned char* head = picture->head;
    const uint32_t infoSize = get32(head + 14);
    const int32_t height = (int32_t)get32(head + 22);

    picture->width = (int32_t)get32(head + 18);
    if (head[0] != 'B' || head[1] != 'M') {
        return fail(path, "starts with bytes %02x %02x, a BMP with 42 4d", head[0], head[1]);
    }
    if (infoSize < INFO_HEADER || infoSize > 124) { /* longer ones add fields at the end */
        return fail(path, "biSize is %lu, not 40 to 124", (unsigned long)infoSize);
    }
    if (picture->width < 1) {
        return fail(path, "biWidth is %ld, below 1", (long)picture->width);
    }
    if (height == 0 || height == INT32_MIN) {
        return fail(path, "biHeight is %ld, no number of rows", (long)height);
    }
    if (get16(head + 26) != 1) {
        return fail(path, "biPlanes is %u, not 1", get16(head + 26));
    }
    if (get16(head + 28) != 24) {
        return fail(path, "biBitCount is %u, not 24", get16(head + 28));
    }
    if (get32(head + 30) != 0) {
        return fail(path, "biCompression is %lu, not 0", (unsigned long)get32(head + 30));
    }
    picture->height = height < 0 ? -height : height;
    return true;
}

/* Checks the fields that tell sizes against the length of the file, so that no memory is taken
 * for pixels that are not there. 64 bits hold the product of any width and height. */
static bool checkSizes(const char* path, Picture* picture, unsigned long length) {
    const unsigned long fileSize = get32(picture->head + 2);
    const unsigned long offset = get32(picture->head + 10);
    const unsigned long headersEnd = FILE_HEADER + get32(picture->head + 14);
    const unsigned long imageSize = get32(picture->head + 34);
    const uint64_t rowBytes = ((uint64_t)picture->width * 3 + 3) / 4 * 4;
    const uint64_t size = rowBytes * (uint64_t)picture->height;

    if (length > UINT32_MAX - HEADERS) {
        return fail(path, "has %lu bytes, too many for a BMP", length);
    }
    if (fileSize > length) {
        return fail(path, "is cut short: bfSize is %lu, the file has %lu bytes", fileSize,
                    length);
    }
    if (offset < headersEnd || offset > length) {
        return fail(path, "bfOffBits is %lu, but the headers end at %lu, the file at %lu",
                    offset, headersEnd, length);
    }
    if (imageSize > length - offset) {
        return fail(path, "is cut short: biSizeImage is %lu, the file has %lu bytes of rows",
                    imageSize, length - offset);
    }
    if (size > length - offset) {
        return fail(path, "is cut short: %ld x %ld pixels, but %lu bytes of rows",
                    (long)picture->width, (long)picture->height, length - offset);
    }
    picture->size = (uint32_t)size;
    return true;
}

static bool readOpenFile(const char* path, FILE* file, Picture* picture) {
    const size_t got = fread(picture->head, 1, HEADERS, file);
    long length;

    if (ferror(file)) {
        return fail(path, "%s", strerror(errno));
    }
    if (got < HEADERS) {
        return fail(path, "has %lu bytes, the headers of a BMP alone have %d",
                    (unsigned long)got, HEADERS);
    }
    if (fseek(file, 0, SEEK_END) != 0 || (length = ftell(file)) < 0) {
        return fail(path, "%s", strerror(errno));
    }
    if (!checkKind(path, picture) || !checkSizes(path, picture, (unsigned long)length)) {
        return false;
    }
    picture->rows = malloc(picture->size);
    if (picture->rows == NULL) {
        return fail(path, "no memory for %lu bytes", (unsigned long)picture->size);
    }
    if (fseek(file, (long)get32(picture->head + 10), SEEK_SET) != 0 ||
        fread(picture->rows, 1, picture->size, file) != picture->size) {
        free(picture->rows);
        return fail(path, "cannot be read to its end");
    }
    return true;
}

static bool readPicture(const char* path, Picture* picture) {
    FILE* file = fopen(path, "rb");
    bool done;

    if (file == NULL) {
        return fail(path, "%s", strerror(errno));
    }
    done = readOpenFile(path, file, picture);
    fclose(file);
    return done;
}

/* Writes the headers of the source and the pixels of a handle, whose rows have no padding. The
 * height keeps its sign, since the library keeps the order of the rows. */
static bool writeOpenFile(FILE* file, const Picture* picture, const unsigned char* pixels) {
    const size_t rowBytes = (size_t)picture->width * 3;
    const size_t padding = picture->size / (uint32_t)picture->height - rowBytes;
    unsigned char head[HEADERS];
    int32_t y;

    memcpy(head, picture->head, HEADERS);
    put32(head + 2, HEADERS + picture->size);
    put32(head + 10, HEADERS);
    put32(head + 14, INFO_HEADER);
    put32(head + 34, picture->size);
    put32(head + 46, 0); /* biClrUsed and biClrImportant: a palette is not copied */
    put32(head + 50, 0);
    if (fwrite(head, 1, HEADERS, file) != HEADERS) {
        return false;
    }
    for (y = 0; y < picture->height; ++y) {
        if (fwrite(pixels, 1, rowBytes, file) != rowBytes ||
            fwrite("\0\0\0", 1, padding, file) != padding) {
            return false;
        }
        pixels += rowBytes;
    }
    return true;
}

/* Gives a file another name. What has that name already is replaced. */
static bool replaceFile(const char* from, const char* to) {
#ifdef _WIN32
    errno = EACCES;
    return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING) != 0;
#else
    return rename(from, to) == 0;
#endif
}

/* Writes under another name first, so that no failure leaves half a picture. */
static bool writePicture(const char* path, const Picture* picture,
                         const unsigned char* pixels) {
    const size_t length = strlen(path) + sizeof ".part";
    char* part = malloc(length);
    FILE* file;
    bool done = false;

    if (part == NULL) {
        return fail(path, "no memory");
    }
    snprintf(part, length, "%s.part", path);
    file = fopen(part, "wb");
    if (file != NULL) {
        done = writeOpenFile(file, picture, pixels);
        done = fclose(file) == 0 && done && replaceFile(part, path);
    }
    if (!done) {
        fail(path, "cannot be written: %s", strerror(errno));
    }
    if (file != NULL && !done) {
        remove(part);
    }
    free(part);
    return done;
}

/* A callback gets no data of the host's, so what it needs is static. */
static struct {
    int pass;  /* the one that runs, from 0 */
    int shown; /* percent of all passes */
    bool live; /* a bar that is drawn over itself, or plain lines for a log */
} progress;

static void ORV_CALLBACK showProgress(int percent) {
    static const char bar[] = "########################################";
    static const char rest[] = "----------------------------------------";
    const int width = sizeof bar - 1;
    int total;
    int filled;

    /* Values may repeat, fall and pass 100. */
    percent = percent < 0 ? 0 : percent > 100 ? 100 : percent;
    total = (100 * progress.pass + percent) / PASSES;
    if (total <= progress.shown) {
        return;
    }
    filled = width * total / 100;
    if (progress.live) {
        fprintf(stderr, "\rrestoring [%.*s%.*s] %3d %%", filled, bar, width - filled, rest,
                total);
    } else if (total / 25 > progress.shown / 25) {
        fprintf(stderr, "restoring: %d %%\n", total / 25 * 25);
    }
    progress.shown = total;
}

/* Returns a new handle, or null. Each pass works on the result of the one before. */
static void* restore(void* photo) {
    void* result = NULL;

    progress.shown = 0;
    progress.live = isatty(fileno(stderr)) != 0;
    for (progress.pass = 0; progress.pass < PASSES; ++progress.pass) {
        void* source = progress.pass == 0 ? photo : result;
        /* Operations narrow the range of their reports and leave it so: set it back each time. */
        SetORVCallBack(showProgress);
        result = ORVFastRestoration(source, ORV_SCHEME_AOS, ORV_SOLVER_THOMAS, /*iterations=*/1,
                                    TIME_STEP, /*solverIterations=*/0, PRESMOOTHING, CONTRAST,
                                    ORV_FLOW_PERONA_MALIK, ORV_GRADIENT_NORM_CENTRAL,
                                    /*cflSubsteps=*/0);
        if (source != photo) {
            DestroyORVImage(source);
        }
        if (result == NULL) {
            break;
        }
        showProgress(100); /* reports may end before it: the return of the call is the end */
    }
    SetORVCallBack(NULL);
    if (progress.live && progress.shown > 0) {
        fputc('\n', stderr);
    }
    return result;
}

/* Prints how far the samples of the result are from those of the photo. */
static void compare(const char* path, const unsigned char* before, const unsigned char* after,
                    size_t count) {
    uint64_t sum = 0;
    size_t changed = 0;
    int largest = 0;
    size_t i;

    for (i = 0; i < count; ++i) {
        const int difference = abs(before[i] - after[i]);
        sum += (uint64_t)difference;
        changed += difference != 0;
        largest = difference > largest ? difference : largest;
    }
    printf("%s: %lu of %lu samples changed, mean difference %.2f grey levels, largest %d\n",
           path, (unsigned long)changed, (unsigned long)count, (double)sum / (double)count,
           largest);
}

static bool process(const char* input, const char* output, const Picture* picture) {
    const size_t count = (size_t)picture->width * 3 * (size_t)picture->height;
    BITMAPINFOHEADER header;
    void* photo;
    void* result;
    bool done = false;

    memset(&header, 0, sizeof header);
    header.biSize = sizeof header;
    header.biWidth = picture->width;
    header.biHeight = picture->height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    photo = ConvertORVImage(&header, picture->rows); /* copies the pixels */
    result = photo == NULL ? NULL : restore(photo);
    if (result == NULL) {
        fail(input, "the library has no memory for %ld x %ld pixels", (long)picture->width,
             (long)picture->height);
    } else if (writePicture(output, picture, GetORVImageData(result))) {
        compare(output, GetORVImageData(photo), GetORVImageData(result), count);
        done = true;
    }
    DestroyORVImage(result); /* null is fine */
    DestroyORVImage(photo);
    return done;
}

int main(int argc, char** argv) {
    Picture picture;
    bool done;

    if (argc != 3) {
        fprintf(stderr, "usage: restore_bmp IN.bmp OUT.bmp\n");
        return 2;
    }
    if (!readPicture(argv[1], &picture)) {
        return 1;
    }
    printf("%s: %ld x %ld pixels\n", argv[1], (long)picture.width, (long)picture.height);
    fflush(stdout); /* before the progress, which goes to another stream */
    done = process(argv[1], argv[2], &picture);
    free(picture.rows);
    return done ? 0 : 1;
}
