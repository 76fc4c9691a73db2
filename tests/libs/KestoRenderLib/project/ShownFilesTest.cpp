#include "libs/KestoRenderLib/project/Composition.h"
#include "libs/KestoRenderLib/project/GifFile.h"
#include "support/FrameNumber.h"
#include "support/JpegFile.h"
#include "support/PdfFile.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>

using namespace KestoMediaLib;
using namespace RenderTests;

namespace {

constexpr int videoWidth = 128;
constexpr int videoHeight = 96;

std::optional<int> numberOf(const Frame& frame) {
    if (!frame)
        return std::nullopt;
    return FrameNumber::read(frame->GetPixels(), frame->GetWidth(), frame->GetHeight(), frame->GetStride());
}

/// 90 numbered frames, 25 to the second, at their own size.
boost::shared_ptr<VideoClip> video(const std::string& path = videoPath("h264.mp4")) {
    auto clip = boost::make_shared<VideoClip>(SourceFile{path});
    clip->setExtent({videoWidth, videoHeight});
    clip->setSpan({.start = 0, .duration = 10 * modelTimePerSecond});
    return clip;
}

template <class Clip>
boost::shared_ptr<Clip> clipOf(const std::filesystem::path& path, double width, double height) {
    auto clip = boost::make_shared<Clip>(SourceFile{path.string()});
    clip->setExtent({width, height});
    return lasting(clip);
}

std::vector<unsigned char> png(int width, int height, std::function<std::uint32_t(int x, int y)> pixelAt) {
    const TestSupport::PngFile file = {.width = width, .height = height, .pixelAt = std::move(pixelAt)};
    return file.bytes();
}

class ShownFiles : public ::testing::Test {
protected:
    TestSupport::TempFolder folder;
};

} // namespace

TEST(ShownVideo, TheFrameThatCoversTheTimeIsShown) {
    Composition composition(videoWidth, videoHeight);
    composition.add(video());
    for (const auto& [frame, number] :
         {std::pair(0, 0), std::pair(1, 2), std::pair(10, 25), std::pair(31, 77)})
        EXPECT_EQ(numberOf(composition.render(frame)), number) << frame;
}

TEST(ShownVideo, EarlierFramesCanBeShownAfterLaterOnes) {
    Composition composition(videoWidth, videoHeight);
    composition.add(video());
    EXPECT_EQ(numberOf(composition.render(30)), 75);
    EXPECT_EQ(numberOf(composition.render(2)), 5);
}

TEST(ShownVideo, TrimmingStartsLaterInTheFile) {
    const auto clip = video();
    clip->setSpan({.start = frames(5), .duration = frames(10), .mediaStart = modelTimePerSecond});
    Composition composition(videoWidth, videoHeight);
    composition.add(clip);
    EXPECT_EQ(numberOf(composition.render(5)), 25);
    EXPECT_EQ(numberOf(composition.render(6)), 27);
}

TEST(ShownVideo, ThePlayRateStretchesTime) {
    const auto clip = video();
    clip->setSpan({.start = 0, .duration = frames(20), .playRate = SafeRational(1, 2)});
    Composition composition(videoWidth, videoHeight);
    EXPECT_EQ(numberOf(composition.add(clip).render(10)), 12);
}

TEST(ShownVideo, BehindItsEndTheLastFrameStays) {
    Composition composition(videoWidth, videoHeight);
    EXPECT_EQ(numberOf(composition.add(video()).render(80)), 89);
}

TEST(ShownVideo, AFreezeFrameStays) {
    const auto frozen =
        boost::make_shared<FreezeFrameMedia>(SourceFile{videoPath("h264.mp4")}, SafeRational(2));
    frozen->setExtent({videoWidth, videoHeight});
    Composition composition(videoWidth, videoHeight);
    composition.add(lasting(frozen));
    EXPECT_EQ(numberOf(composition.render(0)), 50);
    EXPECT_EQ(numberOf(composition.render(7)), 50);
}

TEST(ShownVideo, ASmallCanvasShowsItScaled) {
    const auto clip = video();
    Placement placement;
    placement.scale = {0.5, 0.5};
    clip->setPlacement(placement);
    Composition composition(videoWidth / 2, videoHeight / 2);
    EXPECT_EQ(numberOf(composition.add(clip).render(10)), 25);
}

TEST(ShownVideo, ALargeCanvasShowsItScaled) {
    const auto clip = video();
    Placement placement;
    placement.scale = {2, 2};
    clip->setPlacement(placement);
    Composition composition(videoWidth * 2, videoHeight * 2);
    EXPECT_EQ(numberOf(composition.add(clip).render(10)), 25);
}

TEST(ShownVideo, WithoutASizeItIsShownAtItsOwn) {
    const auto clip = video();
    clip->setExtent({});
    Composition composition(videoWidth, videoHeight);
    EXPECT_EQ(numberOf(composition.add(clip).render(10)), 25);
}

TEST(ShownVideo, MediaOfOneFileShowTheirOwnTimes) {
    const auto later = video();
    later->setSpan({.start = 0, .duration = frames(20), .mediaStart = 2 * modelTimePerSecond});
    Composition composition(videoWidth, 2 * videoHeight);
    composition.add(at(0, -videoHeight / 2, video())).add(at(0, videoHeight / 2, later));
    const Frame both = composition.render(10);
    const auto numberFrom = [&](int row) {
        return FrameNumber::read(both->GetPixels() + row * both->GetStride(), videoWidth, videoHeight,
                                 both->GetStride());
    };
    EXPECT_EQ(numberFrom(0), 25);
    EXPECT_EQ(numberFrom(videoHeight), 75);
}

TEST(ShownVideo, MoreMediaThanDecodersAreAllShown) {
    constexpr int count = 12;
    Composition composition(videoWidth, count * videoHeight);
    for (int i = 0; i < count; ++i) {
        const auto clip = video();
        clip->setSpan({.start = 0, .duration = frames(20), .mediaStart = i * modelTimePerSecond / 25});
        composition.add(at(0, (i + 0.5 - count / 2.0) * videoHeight, clip));
    }
    for (const int frame : {0, 1}) {
        const Frame all = composition.render(frame);
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(FrameNumber::read(all->GetPixels() + i * videoHeight * all->GetStride(), videoWidth,
                                        videoHeight, all->GetStride()),
                      i + (frame == 0 ? 0 : 2))
                << i;
    }
}

TEST(ShownVideo, DrawingOverItLeavesTheNextFrameClean) {
    Composition composition(videoWidth, videoHeight);
    composition.add(video()).add(lasting(colored(red, videoWidth, videoHeight), 0, 1));
    EXPECT_EQ(valueAt(composition.render(0), 5, 5), red);
    const auto decodedAgain = video();
    decodedAgain->setSpan({.start = frames(1), .duration = frames(1)});
    composition.add(decodedAgain);
    EXPECT_EQ(numberOf(composition.render(1)), 0);
}

TEST_F(ShownFiles, AMissingVideoIsAHole) {
    Composition composition(4, 4);
    composition.add(colored(red, 4, 4)).add(clipOf<VideoClip>(folder / "no.mp4", 4, 4));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), red);
}

TEST_F(ShownFiles, AVideoThatIsNoneIsAHole) {
    const auto path = folder.write("text.mp4", "this is no video");
    Composition composition(4, 4);
    composition.add(colored(red, 4, 4)).add(clipOf<VideoClip>(path, 4, 4));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), red);
}

TEST_F(ShownFiles, AVideoThatVanishesMakesNoFailure) {
    const auto path = folder / "vanishing.mp4";
    std::filesystem::copy_file(videoPath("h264.mp4"), path);
    Composition composition(videoWidth, videoHeight);
    composition.add(video(path.string()));
    EXPECT_EQ(numberOf(composition.render(10)), 25);
    std::filesystem::remove(path);
    EXPECT_TRUE(composition.render(20));
}

TEST_F(ShownFiles, AVideoThatIsCutShortMakesNoFailure) {
    const auto path = folder / "shrinking.mp4";
    std::filesystem::copy_file(videoPath("h264.mp4"), path);
    Composition composition(videoWidth, videoHeight);
    composition.add(video(path.string()));
    EXPECT_EQ(numberOf(composition.render(10)), 25);
    std::filesystem::resize_file(path, 2000);
    EXPECT_TRUE(composition.render(34));
}

TEST_F(ShownFiles, AnImageIsStretchedToTheMediasSize) {
    const auto path = folder.write("a.png", png(2, 1, [](int x, int) { return x == 0 ? red : green; }));
    Composition composition(16, 4);
    const Frame frame = composition.add(clipOf<ImageClip>(path, 16, 4)).render();
    EXPECT_EQ(valueAt(frame, 0, 0), red);
    EXPECT_EQ(valueAt(frame, 15, 3), green);
}

TEST_F(ShownFiles, AnImageIsShownPixelByPixel) {
    const auto path = folder.write("a.png", png(4, 2, [](int x, int y) {
                                       return x == 0 ? red : y == 0 ? green : blue;
                                   }));
    Composition composition(6, 4);
    EXPECT_EQ(lettersOf(composition.add(clipOf<ImageClip>(path, 4, 2)).render()), "......\n"
                                                                                  ".RGGG.\n"
                                                                                  ".RBBB.\n"
                                                                                  "......\n");
}

TEST_F(ShownFiles, AnImageIsTurnedAsItsCameraWas) {
    const TestSupport::JpegFile onItsSide = {.width = 32,
                                             .height = 16,
                                             .pixelAt = [](int x, int) { return x < 16 ? 0xFFFFFFU : 0U; },
                                             .orientation = 6};
    const auto path = folder.write("a.jpg", onItsSide.bytes());
    Composition composition(16, 32);
    const Frame frame = composition.add(clipOf<ImageClip>(path, 16, 32)).render();
    EXPECT_GT(valueAt(frame, 8, 4) & 255, 250U) << "left becomes top";
    EXPECT_LT(valueAt(frame, 8, 28) & 255, 5U);
}

TEST_F(ShownFiles, AFinePatternShrinksToItsAverage) {
    const auto path =
        folder.write("a.png", png(64, 64, [](int x, int y) { return (x + y) % 2 == 0 ? black : white; }));
    Composition composition(8, 8);
    const Frame frame = composition.add(clipOf<ImageClip>(path, 8, 8)).render();
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_NEAR(valueAt(frame, x, y) & 255, 128, 6) << x << ", " << y;
}

TEST_F(ShownFiles, AFinePatternShrinksToItsAverageAlsoWhenTurned) {
    const auto path =
        folder.write("a.png", png(64, 64, [](int x, int y) { return (x + y) % 2 == 0 ? black : white; }));
    const auto clip = clipOf<ImageClip>(path, 8, 8);
    Placement placement;
    placement.rotation = 30;
    clip->setPlacement(placement);
    Composition composition(8, 8);
    EXPECT_NEAR(valueAt(composition.add(clip).render(), 4, 4) & 255, 128, 6);
}

TEST_F(ShownFiles, ACroppedImageShowsWhatIsLeft) {
    const auto path = folder.write("a.png", png(4, 2, [](int x, int) { return x < 2 ? red : green; }));
    const auto clip = clipOf<ImageClip>(path, 4, 2);
    Placement placement;
    placement.cropLeft = 0.25;
    placement.cropRight = 0.25;
    clip->setPlacement(placement);
    Composition composition(4, 2);
    EXPECT_EQ(lettersOf(composition.add(clip).render()), ".RG.\n.RG.\n");
}

TEST_F(ShownFiles, AnImageShinesThroughWhereItDoes) {
    const auto path = folder.write("a.png", png(4, 2, [](int x, int) { return x < 2 ? 0x80FFFFFFU : 0U; }));
    Composition composition(4, 2);
    composition.add(colored(black, 4, 2)).add(clipOf<ImageClip>(path, 4, 2));
    const Frame frame = composition.render();
    EXPECT_EQ(valueAt(frame, 0, 0), 0xFF808080U);
    EXPECT_EQ(valueAt(frame, 3, 0), black);
}

TEST_F(ShownFiles, ADamagedImageIsAHole) {
    auto bytes =
        png(64, 64, [](int x, int y) { return 0xFF000000U | static_cast<unsigned>(x * 7919 + y * 104729); });
    bytes.resize(bytes.size() / 2);
    Composition composition(64, 64);
    composition.add(colored(red, 64, 64)).add(clipOf<ImageClip>(folder.write("a.png", bytes), 64, 64));
    EXPECT_EQ(valueAt(composition.render(0), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(1), 1, 1), red);
}

TEST_F(ShownFiles, AnImageStaysShownWhenItsFileVanishes) {
    const auto path = folder.write("a.png", png(4, 2, [](int, int) { return red; }));
    Composition composition(4, 2);
    composition.add(clipOf<ImageClip>(path, 4, 2));
    EXPECT_EQ(valueAt(composition.render(0), 1, 1), red);
    std::filesystem::remove(path);
    EXPECT_EQ(valueAt(composition.render(1), 1, 1), red);
}

TEST_F(ShownFiles, AnImageThatIsReplacedIsShownAnew) {
    const auto path = folder.write("shown.png", png(2, 2, [](int, int) { return red; }));
    Composition composition(2, 2);
    composition.add(clipOf<ImageClip>(path, 2, 2));
    EXPECT_EQ(lettersOf(composition.render()), "RR\nRR\n");
    std::filesystem::rename(folder.write("new.png", png(2, 2, [](int, int) { return blue; })), path);
    EXPECT_EQ(lettersOf(composition.render()), "BB\nBB\n");
}

TEST_F(ShownFiles, AnImageThatComesLaterIsShown) {
    const auto path = folder / "shown.png";
    Composition composition(2, 2);
    composition.add(clipOf<ImageClip>(path, 2, 2));
    EXPECT_EQ(lettersOf(composition.render()), "..\n..\n");
    folder.write("shown.png", png(2, 2, [](int, int) { return blue; }));
    EXPECT_EQ(lettersOf(composition.render()), "BB\nBB\n");
}

TEST_F(ShownFiles, AVideoThatIsReplacedIsShownAnew) {
    const auto path = folder / "shown.mp4";
    std::filesystem::copy_file(videoPath("h264.mp4"), path);
    Composition composition(videoWidth, videoHeight);
    composition.add(video(path.string()));
    EXPECT_EQ(numberOf(composition.render(0)), 0);
    std::filesystem::copy_file(videoPath("cut-front.mp4"), folder / "new.mp4");
    std::filesystem::rename(folder / "new.mp4", path);
    EXPECT_EQ(numberOf(composition.render(0)), 12);
}

TEST_F(ShownFiles, AnAnimatedGifPlaysByItsOwnTimes) {
    const auto path = folder.write("a.gif", gifOf(std::array{0xFF0000U, 0x00FF00U, 0x0000FFU}, 20));
    Composition composition(4, 2);
    composition.add(clipOf<AnimatedGifClip>(path, 4, 2));
    for (const auto& [frame, color] :
         {std::pair(0, red), std::pair(1, red), std::pair(2, green), std::pair(5, blue)})
        EXPECT_EQ(valueAt(composition.render(frame), 1, 1), color) << frame;
}

TEST_F(ShownFiles, AnAnimatedGifStartsAgainAtItsEnd) {
    const auto path = folder.write("a.gif", gifOf(std::array{0xFF0000U, 0x00FF00U, 0x0000FFU}, 20));
    Composition composition(4, 2);
    composition.add(lasting(clipOf<AnimatedGifClip>(path, 4, 2), 0, 100));
    EXPECT_EQ(valueAt(composition.render(6), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(20), 1, 1), green);
}

TEST_F(ShownFiles, APageOfADocumentIsShown) {
    const TestSupport::PdfFile document = {
        .widthInPoints = 30, .heightInPoints = 15, .content = "1 0 0 rg 0 0 15 15 re f"};
    const auto page = boost::make_shared<DocumentMedia>(folder.write("a.pdf", document.text()).string(), 1);
    page->setExtent({8, 4});
    Composition composition(8, 4);
    const Frame frame = composition.add(lasting(page)).render();
    EXPECT_EQ(valueAt(frame, 1, 2), red);
    EXPECT_EQ(valueAt(frame, 6, 2), white);
}

TEST_F(ShownFiles, APageThatIsNotThereIsAHole) {
    const TestSupport::PdfFile document = {.widthInPoints = 30, .heightInPoints = 15};
    const auto page = boost::make_shared<DocumentMedia>(folder.write("a.pdf", document.text()).string(), 2);
    page->setExtent({8, 4});
    Composition composition(8, 4);
    EXPECT_EQ(valueAt(composition.add(lasting(page)).render(), 1, 2), 0U);
}

TEST(ShownNothing, APlaceholderAndSoundShowNothing) {
    const auto placeholder = boost::make_shared<PlaceholderMedia>();
    placeholder->setExtent({4, 2});
    Composition composition(4, 2);
    composition.add(lasting(placeholder)).add(lasting(boost::make_shared<AudioMedia>(SourceFile{"no.wav"})));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0U);
}
