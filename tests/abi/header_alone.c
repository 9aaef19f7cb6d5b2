#include "orv/orv.h"

/* Fails to compile unless the header is 40 bytes with its fields where a file has them. */
typedef char header_is_40_bytes[sizeof(BITMAPINFOHEADER) == 40 ? 1 : -1];
extern header_is_40_bytes unused;
