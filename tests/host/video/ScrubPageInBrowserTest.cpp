#include "SheetRun.h"

#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdlib>

using testing::ElementsAre;

namespace {

bool hasBrowser() {
    return std::system("command -v chromium >/dev/null 2>&1") ==
           0; // NOLINT(cert-env33-c,concurrency-mt-unsafe)
}

/// Reads the number out of the canvas, as `FrameNumber::read` does, and what the page says.
constexpr const char* probe = R"(<script>
function shownNow() {
  const canvas = document.getElementById("picture"), at = canvas.getContext("2d");
  let blocks = 0;
  for (let block = 0; block < 16; ++block) {
    const x = Math.floor((block % 4 * 2 + 1) * canvas.width / 8);
    const y = Math.floor((Math.floor(block / 4) * 2 + 1) * canvas.height / 8);
    if (at.getImageData(x, y, 1, 1).data[1] > 127) blocks |= 1 << block;
  }
  const slider = document.getElementById("scrubber");
  return {number: blocks & 0xFFF, time: document.getElementById("time").textContent,
    value: Number(slider.getAttribute("aria-valuenow")), text: slider.getAttribute("aria-valuetext")};
}
function point(id, kind, share) {
  const box = document.getElementById(id).getBoundingClientRect();
  document.getElementById(id).dispatchEvent(new PointerEvent(kind, {bubbles: true,
    clientX: box.left + share * box.width, clientY: box.top + box.height / 2}));
  return shownNow();
}
function press(key) {
  document.getElementById("scrubber").dispatchEvent(new KeyboardEvent("keydown", {key, bubbles: true}));
  return shownNow();
}
function report() {
  const all = document.createElement("pre");
  all.id = "report";
  all.textContent = JSON.stringify(STEPS);
  document.body.append(all);
}
const waiting = setInterval(() => {
  if (!document.documentElement.dataset.ready) return;
  clearInterval(waiting);
  report();
}, 10);
</script>)";

std::string between(const std::string& text, const std::string& start, const std::string& end) {
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find(end, from) - from);
}

/// Opens a page of ten tiles, 0.36 seconds apart, and takes these steps, which are JavaScript.
class ScrubPageInBrowser : public testing::Test {
protected:
    void SetUp() override {
        if (!hasBrowser())
            GTEST_SKIP() << "chromium is not installed";
    }

    nlohmann::json after(const std::string& steps, const std::string& windowSize = "800,600") const {
        const std::string page = making.folder / "page.html";
        const ProgramRun made = making.make(videoPath("h264.mp4"), {"--count", "10", "--html", page});
        EXPECT_EQ(made.exitStatus, 0) << made.errors;
        std::string script = probe;
        script.replace(script.find("STEPS"), 5, steps);
        const std::string probed = making.folder.write("probed.html", TestSupport::readFile(page) + script);
        return nlohmann::json::parse(between(domOf(probed, windowSize), "<pre id=\"report\">", "</pre>"));
    }

    std::string domOf(const std::string& page, const std::string& windowSize) const {
        const std::string dom = making.folder / "dom.html";
        const std::string profile = making.folder / "profile";
        const std::string command =
            "HOME='" + profile +
            "' timeout 60 chromium --headless --no-sandbox --disable-gpu --disable-quic "
            "--no-first-run --disable-background-networking --disable-component-update --disable-sync "
            "--user-data-dir='" +
            profile + "' --window-size=" + windowSize +
            " --virtual-time-budget=5000 "
            "--dump-dom 'file://" +
            page + "' >'" + dom + "' 2>/dev/null </dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        return TestSupport::readFile(dom);
    }

    SheetMaking making;
};

std::vector<int> numbersOf(const nlohmann::json& steps) {
    std::vector<int> numbers;
    for (const nlohmann::json& step : steps)
        numbers.push_back(step.at("number"));
    return numbers;
}

} // namespace

TEST_F(ScrubPageInBrowser, PointerAndKeysShowTheTileOfTheirTime) {
    const nlohmann::json steps = after(R"([shownNow(),
        point("track", "pointermove", 0.55), point("picture", "pointermove", 0.25), point("track", "pointerdown", 0.999),
        point("track", "pointermove", 0), press("ArrowRight"), press("End"), press("ArrowRight"), press("ArrowLeft"),
        press("Home"), press("ArrowLeft"), press("PageUp")])");
    EXPECT_THAT(numbersOf(steps), ElementsAre(0, 45, 18, 81, 0, 9, 81, 81, 72, 0, 0, 9));
    EXPECT_EQ(steps[1].at("time"), "00:01.800");
    EXPECT_EQ(steps[1].at("value"), 1800);
    EXPECT_EQ(steps[1].at("text"), "00:01.800, tile 6 of 10");
}

TEST_F(ScrubPageInBrowser, FitsThePhone) {
    const nlohmann::json widths = after("[document.documentElement.scrollWidth, innerWidth, "
                                        "document.getElementById('track').getBoundingClientRect().height]",
                                        "360,740");
    EXPECT_LE(widths[0].get<int>(), widths[1].get<int>());
    EXPECT_GE(widths[2].get<int>(), 44); // what a finger can hit
}
