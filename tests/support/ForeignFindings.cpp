#include "platform/Export.h"

// What the sanitizers find in libraries that can't be mended here. They look for these functions by name.
// NOLINTBEGIN(bugprone-reserved-identifier)

// The HEVC encoder that makes inputs keeps tables for good; libxml2 loses the values of entities in a
// document that it refuses; fontconfig keeps its patterns alive through offsets, which the checker cannot
// follow.
extern "C" KESTO_EXPORT const char* __lsan_default_suppressions() {
    return "leak:x265_malloc\nleak:xmlParseEntityValue\nleak:libfontconfig\n";
}

// What was passed over is no message of the program's, which tests read.
extern "C" KESTO_EXPORT const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// GLib's allocator, librsvg, FFmpeg, what draws letters, and codecs with threads of their own lock and count
// references by means that the checker cannot see in uninstrumented code.
extern "C" KESTO_EXPORT const char* __tsan_default_suppressions() {
    return "called_from_lib:libglib-2.0.so.0\ncalled_from_lib:libgobject-2.0.so.0\n"
           "called_from_lib:libgio-2.0.so.0\ncalled_from_lib:librsvg-2.so.2\n"
           "called_from_lib:libavutil.so\ncalled_from_lib:libavcodec.so\ncalled_from_lib:libavformat.so\n"
           "called_from_lib:libswscale.so\n"
           "called_from_lib:libfontconfig.so.1\ncalled_from_lib:libpango-1.0.so.0\n"
           "called_from_lib:libpangoft2-1.0.so.0\ncalled_from_lib:libpangocairo-1.0.so.0\n"
           "called_from_lib:libharfbuzz.so.0\ncalled_from_lib:libcairo.so.2\n"
           "called_from_lib:libfreetype.so.6\n"
           "called_from_lib:libaom.so\ncalled_from_lib:libdav1d.so\ncalled_from_lib:libde265.so\n"
           "called_from_lib:libvpx.so\ncalled_from_lib:libx264.so\ncalled_from_lib:libx265.so\n";
}

// NOLINTEND(bugprone-reserved-identifier)
