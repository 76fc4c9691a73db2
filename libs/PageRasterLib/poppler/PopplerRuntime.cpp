#include "PageRasterLib/poppler/PopplerRuntime.h"

#include <Error.h>
#include <GfxState.h>
#include <GlobalParams.h>
#include <Page.h>

#include <cstddef>
#include <new>

namespace PageRasterLib {

namespace {

void dropMessage(ErrorCategory, Goffset, const char*) {}

class Runtime {
public:
    Runtime()
        : shared(&dropMessage) {
        // The first graphics state makes the colour profiles that all others use, and does so without a lock.
        const PDFRectangle unit(0, 0, 1, 1);
        const GfxState first(72, 72, &unit, 0, false);
    }

private:
    GlobalParamsIniter shared;
};

} // namespace

void startPoppler() {
    // Never torn down: a worker may still be drawing when the process ends.
    alignas(Runtime) static std::byte place[sizeof(Runtime)];
    static const Runtime* const runtime = new (place) Runtime;
    (void)runtime;
}

} // namespace PageRasterLib
