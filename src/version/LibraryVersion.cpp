#include "version/LibraryVersion.h"

namespace KestoThumbnailer {

const char* LibraryVersion() {
    return KESTO_LIBRARY_VERSION;
}

} // namespace KestoThumbnailer
