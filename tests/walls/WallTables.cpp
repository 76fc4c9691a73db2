#include "walls/WallTables.h"

#include <array>

namespace Walls {

namespace {

constexpr std::array<std::string_view, 8> floors = {
    "src/scheduling",        "src/production",           "src/framegrab", "src/inspection", "src/graph",
    "src/inspection/source", "src/scheduling/imagefile", "src/platform",
};

constexpr std::array<std::string_view, 21> systemHeaderNames = {
    "arpa/*",  "dirent.h", "dlfcn.h",  "errno.h",   "fcntl.h",  "limits.h", "linux/*",
    "link.h",  "locale.h", "poll.h",   "pthread.h", "setjmp.h", "signal.h", "stdio.h",
    "spawn.h", "stdlib.h", "string.h", "sys/*",     "time.h",   "unistd.h", "stdint.h",
};

constexpr std::array<Exception, 9> exceptionTable = {{
    {"host/Paths.cpp", "unistd.h", "the standard library does not tell whether a folder may be written to"},
    {"host/StandardFiles.cpp", "fcntl.h", "whether a number stands for an open file"},
    {"host/StandardFiles.cpp", "unistd.h", "the numbers themselves"},
    {"host/batch/Interruption.cpp", "fcntl.h", "the flags of the pipe that tells of a signal"},
    {"host/batch/Interruption.cpp", "unistd.h", "the pipe itself: all that a signal handler may use"},
    {"host/batch/LineInputs.cpp", "poll.h", "waits for a line and for a signal at once"},
    {"host/batch/LineInputs.cpp", "unistd.h", "reads what is there without waiting for more"},
    {"host/batch/Terminal.cpp", "sys/ioctl.h", "the width of the terminal"},
    {"host/batch/Terminal.cpp", "unistd.h", "the standard library does not know terminals"},
}};

} // namespace

std::span<const std::string_view> floorsFromTheTop() {
    return floors;
}

std::span<const ForeignLibrary> foreignLibraries() {
    static const std::vector<ForeignLibrary> libraries = {
        {"Boost", {"boost/*"}, {"src", "backends", "libs"}},
        {"expected", {"tl/*"}, {"backends", "libs"}},
        {"fmt", {"fmt/*"}, {"backends", "libs", "host"}},
        {"CLI11", {"CLI/*"}, {"host"}},
        {"JSON for Modern C++", {"nlohmann/*"}, {"libs", "host"}},
        {"the processor's vector instructions",
         {"arm_neon.h", "emmintrin.h", "immintrin.h", "smmintrin.h", "tmmintrin.h"},
         {"backends"}},
        {"FFmpeg",
         {"libavcodec/*", "libavdevice/*", "libavfilter/*", "libavformat/*", "libavutil/*", "libswresample/*",
          "libswscale/*"},
         {"backends/engine"}},
        {"zimg", {"zimg*"}, {"backends/gdiplus/scaling"}},
        {"Little CMS", {"lcms2*"}, {"backends/gdiplus/color"}},
        {"libjpeg-turbo", {"jpeglib.h", "jerror.h", "jmorecfg.h", "turbojpeg.h"}, {"backends/gdiplus"}},
        {"ISA-L", {"isa-l/*"}, {"backends/gdiplus"}},
        {"libdeflate", {"libdeflate.h"}, {"backends/gdiplus"}},
        {"giflib", {"gif_lib.h"}, {"backends/gdiplus"}},
        {"libtiff", {"tiff.h", "tiffio.h"}, {"backends/gdiplus"}},
        {"libwebp", {"webp/*"}, {"backends/gdiplus"}},
        {"libheif", {"libheif/*"}, {"backends/gdiplus"}},
        {"libexif", {"libexif/*"}, {"backends/gdiplus/properties"}},
        {"libmp4v2", {"mp4v2/*"}, {"backends/mp4v2"}},
        // An SVG is a picture to the codecs and a callout's shape to the renderer, both drawn through Cairo.
        {"Cairo",
         {"cairo/*", "cairo.h"},
         {"backends/gdiplus/codecs/modules", "backends/svg", "libs/KestoRenderLib"}},
        {"librsvg", {"librsvg/*"}, {"backends/svg"}},
        {"Pango", {"pango/*"}, {"libs/KestoRenderLib"}},
        {"poppler",
         {"Catalog.h", "Error.h", "ErrorCodes.h", "GfxState.h", "GlobalParams.h", "Object.h", "OutputDev.h",
          "PDFDoc.h", "Page.h", "SplashOutputDev.h", "Stream.h", "XRef.h", "goo/*", "splash/*"},
         {"libs/PageRasterLib/poppler"}},
    };
    return libraries;
}

std::span<const std::string_view> systemHeaders() {
    return systemHeaderNames;
}

std::span<const Exception> exceptions() {
    return exceptionTable;
}

} // namespace Walls
