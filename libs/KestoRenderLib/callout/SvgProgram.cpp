#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/SvgExchange.h"
#include "KestoRenderLib/callout/SvgPainter.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <thread>

// Draws one SVG, for a program that can't know how long that takes. The request comes as the standard input;
// one byte on the standard output tells that the picture is there.

namespace {

using namespace KestoRenderLib;

void setLimit(__rlimit_resource resource, rlim_t limit) {
    const rlimit both = {limit, limit};
    (void)::setrlimit(resource, &both); // without a limit of the system's, the other program's clock is left
}

/// What still holds when the other program is gone, or has no memory left.
void limitThisProgram(const SvgRequest& request) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    setLimit(RLIMIT_CORE, 0);
    setLimit(RLIMIT_CPU, static_cast<rlim_t>(request.processorSeconds) *
                             std::max(std::thread::hardware_concurrency(), 1U));
#ifdef KESTO_LIMIT_SVG_MEMORY
    constexpr rlim_t mostMemory = rlim_t{4} << 30;
    setLimit(RLIMIT_DATA, mostMemory);
#endif
}

bool draw(const SvgExchange& exchange) {
    const SvgRequest& request = exchange.request();
    CalloutLook look;
    look.svg = exchange.document();
    look.progress = request.progress;
    const CairoOwned<cairo_surface_t> picture = exchange.picture();
    const CairoOwned<cairo_t> context(cairo_create(picture.get()));
    cairo_set_matrix(context.get(), &request.matrix);
    const bool drawn = paintSvg(context.get(), look, request.area, request.antialiased) &&
                       cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_flush(picture.get());
    return drawn;
}

bool drawRequest() {
    const auto exchange = SvgExchange::open(STDIN_FILENO);
    if (!exchange)
        return false;
    limitThisProgram(exchange->request());
    return draw(*exchange);
}

} // namespace

int main() {
    bool drawn = false;
    try {
        drawn = drawRequest();
    } catch (const std::exception&) {
        drawn = false;
    }
    const char answer = drawn ? 1 : 0;
    const bool told = ::write(STDOUT_FILENO, &answer, 1) == 1;
    ::_exit(told ? EXIT_SUCCESS : EXIT_FAILURE); // nothing has to be put away
}
