#include "svg/SvgExchange.h"
#include "svg/SvgPainter.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <thread>

// Measures or draws one SVG, for a program that can't know how long that takes. The request comes as the
// standard input; one byte on the standard output tells that it was done, or that it can't be.

namespace {

using namespace SvgBackend;

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

Result<void> measure(SvgExchange& exchange) {
    const auto size = measureHere(exchange.document().text);
    if (!size)
        return tl::unexpected(size.error());
    exchange.setSize(*size);
    return {};
}

/// Cairo does not know memory that it did not make as clear.
void clear(cairo_t* context) {
    cairo_save(context);
    cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
    cairo_paint(context);
    cairo_restore(context);
}

Result<void> draw(const SvgExchange& exchange) {
    const SvgRequest& request = exchange.request();
    const CairoOwned<cairo_surface_t> picture = exchange.picture();
    const CairoOwned<cairo_t> context(cairo_create(picture.get()));
    if (request.place.isKnownClear)
        clear(context.get());
    cairo_set_matrix(context.get(), &request.matrix);
    if (auto drawn = paintHere(context.get(), exchange.document(), request.place); !drawn)
        return drawn;
    if (const cairo_status_t status = cairo_status(context.get()); status != CAIRO_STATUS_SUCCESS)
        return damaged(cairo_status_to_string(status));
    cairo_surface_flush(picture.get());
    return {};
}

bool answerRequest() {
    auto exchange = SvgExchange::open(STDIN_FILENO);
    if (!exchange)
        return false;
    limitThisProgram(exchange->request());
    const auto done = exchange->request().isMeasured() ? measure(*exchange) : draw(*exchange);
    if (!done)
        exchange->setMessage(done.error().message);
    return done.has_value();
}

} // namespace

int main() {
    bool done = false;
    try {
        done = answerRequest();
    } catch (const std::exception&) {
        ::_exit(EXIT_FAILURE); // without an answer, as if the document had ended this program
    }
    const char answer = done ? 1 : 0;
    const bool told = ::write(STDOUT_FILENO, &answer, 1) == 1;
    ::_exit(told ? EXIT_SUCCESS : EXIT_FAILURE); // nothing has to be put away
}
