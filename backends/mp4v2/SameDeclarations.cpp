// Two declarations of one C function must agree: this compiles where those of the seam are the library's own.
#include "platform/Mp4v2.h"

#include <mp4v2/mp4v2.h>
