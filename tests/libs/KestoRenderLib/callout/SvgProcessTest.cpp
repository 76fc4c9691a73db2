#include "libs/KestoRenderLib/callout/Overlay.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include <sys/wait.h>

using namespace CalloutTests;

namespace {

std::string svg(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 100'>" + content + "</svg>";
}

Sketch drawing(const std::string& document) {
    return {.shape = "", .params = {{"Svg", document}}, .kind = "TypeWinSVG"};
}

const std::string disc = "<circle cx='100' cy='50' r='40' fill='#f00' stroke='#00f' stroke-width='6'/>";
/// Text is never plain, and this one shows nothing.
const std::string notPlain = "<text></text>";

/// Each mask is drawn eight times for each time that the next one is.
std::string endless() {
    std::string masks;
    for (int mask = 0; mask < 40; ++mask) {
        masks += "<mask id='m" + std::to_string(mask) + "'>";
        for (int copy = 0; copy < 8; ++copy)
            masks +=
                "<rect width='200' height='100' fill='#fff' mask='url(#m" + std::to_string(mask - 1) + ")'/>";
        masks += "</mask>";
    }
    return svg(masks + "<rect width='200' height='100' mask='url(#m39)'/>");
}

/// More numbers than librsvg 2.54 reads, which then ends its process.
std::string deadly() {
    std::string kernel;
    for (int number = 0; number < 50 * 50; ++number)
        kernel += "1 ";
    return svg("<filter id='f'><feConvolveMatrix order='50' kernelMatrix='" + kernel +
               "'/></filter><rect width='200' height='100' filter='url(#f)'/>");
}

/// Drawings here end after so many milliseconds. No other thread runs that could read the environment.
class TimeLimit {
public:
    explicit TimeLimit(const char* milliseconds) {
        ::setenv("KESTO_SVG_TIME_LIMIT_MS", milliseconds, 1); // NOLINT(concurrency-mt-unsafe)
    }
    ~TimeLimit() { ::unsetenv("KESTO_SVG_TIME_LIMIT_MS"); } // NOLINT(concurrency-mt-unsafe)
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;
};

void expectSame(const Overlay& one, const Overlay& other) {
    ASSERT_FALSE(one.isEmpty() || other.isEmpty());
    ASSERT_EQ(one.width(), other.width());
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            ASSERT_EQ(one.at(x, y), other.at(x, y)) << x << ',' << y;
}

std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

bool hasChildren() {
    return ::waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

} // namespace

TEST(SvgProcess, DrawsTheSamePixelsAsThisProcess) {
    const Sketch usual = drawing("");
    Sketch halfWay = drawing("");
    halfWay.params.emplace("DrawTime", __int64{2});
    halfWay.seconds = 1;
    Sketch shadowed = drawing("");
    shadowed.params.emplace("Shadow", true);
    Sketch hard = drawing("");
    hard.antialiased = false;
    Sketch large = drawing("");
    large.scale = 1.7F;
    Sketch onWhite = drawing("");
    onWhite.transparent = false;
    for (Sketch sketch : {usual, halfWay, shadowed, hard, large, onWhite}) {
        sketch.params["Svg"] = svg(disc);
        const Overlay here = draw(sketch);
        sketch.params["Svg"] = svg("<defs>" + notPlain + "</defs>" + disc);
        expectSame(here, draw(sketch));
    }
}

TEST(SvgProcess, ADocumentThatTakesTooLongDrawsNothing) {
    const TimeLimit limit("300");
    EXPECT_TRUE(draw(drawing(endless())).isEmpty());
}

TEST(SvgProcess, ADocumentThatTookTooLongIsNotTriedAgain) {
    const std::string document = endless() + "<!-- once -->";
    {
        const TimeLimit limit("300");
        ASSERT_TRUE(draw(drawing(document)).isEmpty());
    }
    const TimeLimit limit("1000000000");
    EXPECT_TRUE(draw(drawing(document)).isEmpty()) << "else this would not end";
}

TEST(SvgProcess, ADocumentThatLibrsvgDiesOfEndsNothingElse) {
    (void)draw(drawing(deadly()));
    EXPECT_EQ(draw(drawing(svg(disc + notPlain))).at(100, 50), 0xFFFF0000U);
}

TEST(SvgProcess, LeavesNothingBehind) {
    (void)draw(drawing(svg(disc + notPlain)));
    const std::ptrdiff_t before = openFiles();
    (void)draw(drawing(svg(disc + notPlain)));
    (void)draw(drawing("<svg>" + notPlain));
    (void)draw(drawing(deadly() + "<!-- again -->"));
    const TimeLimit limit("300");
    (void)draw(drawing(endless() + "<!-- again -->"));
    EXPECT_EQ(openFiles(), before);
    EXPECT_FALSE(hasChildren());
}
