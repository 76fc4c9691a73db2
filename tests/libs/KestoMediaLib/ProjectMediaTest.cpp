#include "ProjectTextBuilder.h"

#include "KestoMediaLib/CalloutParams.h"
#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "platform/KestoMediaCallout.h"

#include <gtest/gtest.h>

namespace {

using namespace KestoMediaLib; // NOLINT(google-build-using-namespace): most classes of the model are named
                               // here
using MediaTest::errorOf;
using MediaTest::onlyMedia;
using MediaTest::ProjectText;
using MediaTest::readWhole;

constexpr __int64 second = modelTimePerSecond;

/// A colour of a second with one more member.
std::string colorWith(const std::string& member) {
    return R"({"kind": "color", "color": "#000000", "width": 8, "height": 6, "duration": 1, )" + member + "}";
}

std::string mediaError(const std::string& media) {
    return errorOf(ProjectText::ofMedia(media));
}

const std::string at = "demo.qrlproj: /tracks/0/media/0";

TEST(ProjectMedia, FileMediaAreOfTheKindThatIsNamed) {
    const std::string rest = R"(, "file": "f", "stream": 2, "duration": 1})";
    EXPECT_EQ(onlyMedia<VideoClip>(R"({"kind": "video")" + rest)->streamIndex(), 2);
    EXPECT_EQ(onlyMedia<ScreenRecordingClip>(R"({"kind": "screenRecording")" + rest)->fileName(), "/base/f");
    EXPECT_TRUE(onlyMedia<ImageClip>(R"({"kind": "image")" + rest));
    EXPECT_TRUE(onlyMedia<AnimatedGifClip>(R"({"kind": "animatedGif")" + rest));
    EXPECT_TRUE(onlyMedia<AudioMedia>(R"({"kind": "audio")" + rest));
}

TEST(ProjectMedia, AFileMayLeaveItsSizeToTheFile) {
    const auto media = onlyMedia<VideoClip>(R"({"kind": "video", "file": "f", "duration": 1})");
    EXPECT_EQ(media->width(0), 0.0F);
    EXPECT_EQ(media->streamIndex(), -1);
}

TEST(ProjectMedia, PagesAndHeldFramesTellWhichOne) {
    EXPECT_EQ(
        onlyMedia<DocumentMedia>(R"({"kind": "document", "file": "f", "page": 3, "duration": 1})")->page(),
        3);
    const auto held =
        onlyMedia<FreezeFrameMedia>(R"({"kind": "freezeFrame", "file": "f", "time": 2.5, "duration": 1})");
    EXPECT_EQ(held->heldTime(), SafeRational(5, 2));
}

TEST(ProjectMedia, ColorsMayHaveAlpha) {
    const auto colorOf = [](const std::string& text) {
        return onlyMedia<ColorMedia>(
                   R"({"kind": "color", "width": 1, "height": 1, "duration": 1, "color": ")" + text + "\"}")
            ->color();
    };
    EXPECT_EQ(colorOf("#123456"), 0xFF123456U);
    EXPECT_EQ(colorOf("#12345680"), 0x80123456U);
    EXPECT_EQ(colorOf("#ABCDEF00"), 0x00ABCDEFU);
}

TEST(ProjectMedia, SpansAreInSecondsOrFractions) {
    const auto media =
        onlyMedia<ColorMedia>(colorWith(R"("start": "1001/30000", "mediaStart": 0.1, "playRate": "3/2")"));
    const MediaSpan span = media->span();
    EXPECT_EQ(span.start, second * 1001 / 30000);
    EXPECT_EQ(span.duration, second);
    EXPECT_EQ(span.mediaStart, second / 10);
    EXPECT_EQ(span.playRate, SafeRational(3, 2));
}

TEST(ProjectMedia, PlacementIsRead) {
    const auto media = onlyMedia<ColorMedia>(colorWith(
        R"("position": [3, -4], "scale": [2, 0.5], "anchor": [0, 1], "rotation": 45, "opacity": 0.25,
                     "crop": {"left": 0.1, "top": 0.2, "right": 0.3, "bottom": 0.4})"));
    const Placement& placement = media->placement();
    EXPECT_EQ(placement.position.at(1).valueAt(0), -4);
    EXPECT_EQ(placement.scale.at(0).valueAt(0), 2);
    EXPECT_EQ(placement.anchor.at(1).valueAt(0), 1);
    EXPECT_EQ(placement.rotation.valueAt(0), 45);
    EXPECT_EQ(placement.opacity.valueAt(0), 0.25);
    EXPECT_EQ(placement.cropLeft.valueAt(0), 0.1);
    EXPECT_EQ(placement.cropTop.valueAt(0), 0.2);
    EXPECT_EQ(placement.cropRight.valueAt(0), 0.3);
    EXPECT_EQ(placement.cropBottom.valueAt(0), 0.4);
}

TEST(ProjectMedia, KeyFramesMoveOneValueOrTwo) {
    const auto media = onlyMedia<ColorMedia>(colorWith(
        R"("opacity": {"keyFrames": [{"time": 0, "value": 0, "easing": "easeIn"}, {"time": 2, "value": 1}]},
           "position": {"keyFrames": [{"time": 0, "value": [0, 10]}, {"time": 1, "value": [8, 20]}]},
           "scale": {"keyFrames": [{"time": 0, "value": 1, "easing": "hold"}, {"time": 1, "value": 3}]})"));
    const Placement& placement = media->placement();
    EXPECT_DOUBLE_EQ(placement.opacity.valueAt(1), 0.25);
    EXPECT_DOUBLE_EQ(placement.position.at(0).valueAt(SafeRational(1, 2)), 4);
    EXPECT_DOUBLE_EQ(placement.position.at(1).valueAt(SafeRational(1, 2)), 15);
    EXPECT_EQ(placement.scale.at(0).valueAt(SafeRational(1, 2)), 1);
    EXPECT_EQ(placement.scale.at(1).valueAt(1), 3);
}

TEST(ProjectMedia, WrongValuesAreToldWithTheirPlace) {
    const std::vector<std::pair<std::string, std::string>> broken = {
        {R"("start": -3)", "/start: expected seconds of at least 0, found -3"},
        {R"("start": 1e9)", "/start: expected seconds of at most 10000000, found 1000000000.0"},
        {R"("start": "soon")",
         R"(/start: expected seconds as a number or a fraction like "1001/30000", found "soon")"},
        {R"("playRate": 0)", "/playRate: expected a play rate of at least 0.001, found 0"},
        {R"("opacity": 1.5)", "/opacity: expected an opacity of at most 1, found 1.5"},
        {R"("opacity": "full")", R"(/opacity: expected an opacity, found "full")"},
        {R"("position": [1])",
         "/position: expected an array of two values, or key frames of such, found an array"},
        {R"("position": [1, null])", "/position/1: expected pixels, found null"},
        {R"("scale": true)", "/scale: expected an array of two values, or key frames of such, found true"},
        {R"("crop": {"left": -1})", "/crop/left: expected a part of the size of at least 0, found -1"},
        {R"("crop": [0, 0, 0, 0])", "/crop: expected an object, found an array"},
        {R"("rotation": {"keyFrames": []})",
         "/rotation/keyFrames: expected at least one key frame, found an empty array"},
        {R"("rotation": {"keyFrames": [{"time": 1, "value": 0}, {"time": 1, "value": 0}]})",
         "/rotation/keyFrames/1/time: expected a time after that of the key frame before, found 1"},
        {R"("rotation": {"keyFrames": [{"time": 1, "value": 0, "easing": "bounce"}]})",
         "/rotation/keyFrames/0/easing: expected one of linear, easeIn, easeOut, easeInOut, hold, found "
         R"("bounce")"},
        {R"("speed": 2)",
         "/speed: expected one of the members anchor, color, crop, duration, height, kind, "
         "mediaStart, opacity, playRate, position, rotation, scale, start, use, width, found "
         "another"},
    };
    for (const auto& [member, message] : broken)
        EXPECT_EQ(mediaError(colorWith(member)), at + message);
}

TEST(ProjectMedia, WrongMediaAreToldWithTheirPlace) {
    const std::vector<std::pair<std::string, std::string>> broken = {
        {"7", ": expected an object, found 7"},
        {"{}", ": expected a member \"kind\", found none"},
        {R"({"kind": "hologram"})",
         "/kind: expected one of animatedGif, audio, callout, color, document, freezeFrame, gap, group, "
         "image, "
         R"(placeholder, screenRecording, stitched, unified, video, found "hologram")"},
        {R"({"kind": "gap", "duration": 1})", "/kind: expected a gap as a part of stitched media alone"},
        {R"({"kind": "video", "duration": 1})", ": expected a member \"file\", found none"},
        {R"({"kind": "video", "file": "", "duration": 1})",
         "/file: expected a path of 1 to 4096 bytes, found \"\""},
        {R"({"kind": "video", "file": "a\u0000b", "duration": 1})",
         R"(/file: expected a text of at most 1000000 bytes without the character 0, found "a\u0000b")"},
        {R"({"kind": "video", "file": "f", "stream": 1.5, "duration": 1})",
         "/stream: expected a stream number, a whole number, found 1.5"},
        {R"({"kind": "video", "file": "f"})", ": expected a member \"duration\", found none"},
        {R"({"kind": "video", "file": "f", "duration": 1, "width": 5})",
         ": expected the members \"width\" and \"height\" together"},
        {R"({"kind": "placeholder", "duration": 1})",
         ": expected the members \"width\" and \"height\" together"},
        {R"({"kind": "color", "color": "red", "width": 1, "height": 1, "duration": 1})",
         R"(/color: expected a colour like "#rrggbb" or "#rrggbbaa", found "red")"},
        {R"({"kind": "color", "color": "#-12345", "width": 1, "height": 1, "duration": 1})",
         R"(/color: expected a colour like "#rrggbb" or "#rrggbbaa", found "#-12345")"},
        {R"({"kind": "unified", "duration": 1, "audio": {"kind": "image", "file": "f"},
             "visual": {"kind": "image", "file": "f"}})",
         "/audio: expected a media of kind audio, found another"},
        {R"({"kind": "unified", "duration": 1, "audio": {"kind": "audio", "file": "f"},
             "visual": {"kind": "audio", "file": "f"}})",
         "/visual: expected a media that can be seen, found another"},
        {R"({"kind": "stitched", "duration": 1, "parts": [{"kind": "gap", "duration": 1, "start": 1}]})",
         "/parts/0/start: expected one of the members duration, kind, mediaStart, playRate, use, found "
         "another"},
    };
    for (const auto& [media, message] : broken)
        EXPECT_EQ(mediaError(media), at + message);
}

TEST(ProjectMedia, TheTrackAndMediaAreInTheMessage) {
    ProjectText text;
    text.tracks =
        R"([{"media": []}, {"media": []}, {"media": [{"kind": "audio", "file": "f", "duration": -3}]}])";
    EXPECT_EQ(errorOf(text),
              "demo.qrlproj: /tracks/2/media/0/duration: expected seconds of at least 0, found -3");
}

TEST(ProjectMedia, TracksHaveNamesAndMayBeHidden) {
    ProjectText text;
    text.tracks = R"([{"media": [], "name": "Below"}, {"media": [], "hidden": true}])";
    const auto tracks = readWhole(text)->timeline()->mixer()->tracks();
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(dynamic_cast<const TrackModel&>(*tracks[0]).name(), "Below");
    EXPECT_FALSE(tracks[0]->hidden());
    EXPECT_TRUE(tracks[1]->hidden());
}

TEST(ProjectMedia, StitchedPartsFollowEachOther) {
    const auto clip = onlyMedia<StitchedClip>(R"({"kind": "stitched", "duration": 5, "parts": [
        {"kind": "video", "file": "a", "duration": 2, "mediaStart": 7},
        {"kind": "gap", "duration": 1},
        {"kind": "color", "color": "#000000", "width": 8, "height": 6, "duration": 2}]})");
    const auto parts = clip->medias();
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_EQ(spanOf(*parts[0]).mediaStart, 7 * second);
    EXPECT_EQ(spanOf(*parts[1]).start, 2 * second);
    EXPECT_EQ(spanOf(*parts[2]).start, 3 * second);
    EXPECT_TRUE(clip->hasVideo());
    EXPECT_EQ(clip->width(0), 8.0F);
}

TEST(ProjectMedia, UnifiedMediaHaveTheSizeOfTheirVisualPart) {
    const auto clip = onlyMedia<UnifiedClip>(R"({"kind": "unified", "duration": 1,
        "audio": {"kind": "audio", "file": "a"},
        "visual": {"kind": "video", "file": "v", "width": 64, "height": 48}})");
    EXPECT_EQ(clip->width(0), 64.0F);
    EXPECT_EQ(clip->height(0), 48.0F);
}

TEST(ProjectMedia, GroupsHaveTracksOfTheirOwn) {
    const auto group =
        onlyMedia<GroupMedia>(R"({"kind": "group", "width": 9, "height": 9, "duration": 1, "tracks": [
        {"media": []}, {"media": [{"kind": "image", "file": "f", "start": 2, "duration": 1}]}]})");
    ASSERT_EQ(group->tracks().size(), 2U);
    EXPECT_EQ(spanOf(*group->tracks()[1]->medias().at(0)).start, 2 * second);
}

TEST(ProjectMedia, CalloutsHaveADrawingAndEdges) {
    const auto callout = onlyMedia<Callout>(R"({"kind": "callout", "width": 80, "height": 60, "duration": 2,
        "drawing": {"kind": "remix", "shape": "text-arrow", "style": "bold",
                    "params": {"Text": "Hi", "BorderWidth": 2, "FillColor": "#01020304", "Shadow": true,
                               "Alignment": "right", "DrawTime": 1}},
        "edges": [{"name": "DrawPercentageFade", "edge": "start", "duration": 0.75}]})");
    ASSERT_TRUE(callout);
    const auto node = callout->vectorNode()->value();
    EXPECT_EQ(node->kind(), "remix");
    EXPECT_EQ(node->shapeAttribute()->value(), "text-arrow");
    EXPECT_EQ(node->styleAttribute()->value(), "bold");
    EXPECT_EQ(paramOr<std::string>(*node, "Text", ""), "Hi");
    EXPECT_EQ(paramOr<double>(*node, "BorderWidth", 0), 2);
    EXPECT_EQ(colorParamOr(*node, "FillColor", 0), 0x04010203U);
    EXPECT_TRUE(paramOr<bool>(*node, "Shadow", false));
    EXPECT_EQ(paramOr<std::string>(*node, "Alignment", ""), "right");
    EXPECT_EQ(paramOr<double>(*node, "FontSize", 12), 12);
    EXPECT_EQ(callout->edgeModifications().time("DrawPercentageFade"), SafeRational(3, 4));
}

TEST(ProjectMedia, SvgFilesOfCalloutsCountFromTheFolderOfTheProject) {
    const auto callout = onlyMedia<Callout>(R"({"kind": "callout", "width": 8, "height": 6, "duration": 2,
        "drawing": {"kind": "MacSVG", "shape": "line", "params": {"SvgFile": "signs/stop.svg"}}})");
    ASSERT_TRUE(callout);
    EXPECT_EQ(
        paramOr<std::string>(*callout->vectorNode()->value(), "SvgFile", ""),
        onlyMedia<ImageClip>(R"({"kind": "image", "file": "signs/stop.svg", "duration": 1})")->fileName());
}

TEST(ProjectMedia, EveryParameterOfACalloutIsRead) {
    const auto callout = onlyMedia<Callout>(R"({"kind": "callout", "width": 8, "height": 6, "duration": 2,
        "drawing": {"kind": "remix", "shape": "arrow",
                    "params": {"DashStyle": "dash-dot", "FitText": false, "FontUnderline": true,
                               "FontWeight": 300, "HeadAt": "both", "HeadStyle": "swept",
                               "LineCap": "square", "ShadowOpacity": 0.5, "Wrap": false}}})");
    ASSERT_TRUE(callout);
    const auto node = callout->vectorNode()->value();
    EXPECT_EQ(paramOr<std::string>(*node, "DashStyle", ""), "dash-dot");
    EXPECT_FALSE(paramOr<bool>(*node, "FitText", true));
    EXPECT_TRUE(paramOr<bool>(*node, "FontUnderline", false));
    EXPECT_EQ(paramOr<double>(*node, "FontWeight", 0), 300);
    EXPECT_EQ(paramOr<std::string>(*node, "HeadAt", ""), "both");
    EXPECT_EQ(paramOr<std::string>(*node, "HeadStyle", ""), "swept");
    EXPECT_EQ(paramOr<std::string>(*node, "LineCap", ""), "square");
    EXPECT_EQ(paramOr<double>(*node, "ShadowOpacity", 0), 0.5);
    EXPECT_FALSE(paramOr<bool>(*node, "Wrap", true));
}

TEST(ProjectMedia, TheDrawTimeIsWholeOrAFraction) {
    const auto drawTime = [](const std::string& number) {
        const auto callout = onlyMedia<Callout>(
            R"({"kind": "callout", "width": 8, "height": 6, "duration": 2,
                "drawing": {"kind": "TypeWinSVG", "shape": "line", "params": {"DrawTime": )" +
            number + "}}}");
        return *callout->vectorNode()->value()->param("DrawTime");
    };
    EXPECT_EQ(drawTime("2"), VectorNodeParam(__int64{2}));
    EXPECT_EQ(drawTime("2.0"), VectorNodeParam(2.0));
}

TEST(ProjectMedia, WrongCalloutsAreToldWithTheirPlace) {
    const auto error = [](const std::string& drawing) {
        return mediaError(R"({"kind": "callout", "width": 8, "height": 6, "duration": 2, "drawing": )" +
                          drawing + "}");
    };
    EXPECT_EQ(error(R"({"kind": "Remix", "shape": "line"})"),
              at + R"(/drawing/kind: expected one of remix, TypeWinLine, TypeWinSVG, MacSVG, found "Remix")");
    EXPECT_EQ(error(R"({"kind": "remix"})"), at + R"(/drawing: expected a member "shape", found none)");
    EXPECT_EQ(error(R"({"kind": "remix", "shape": "line", "params": {"FontSize": 0}})"),
              at + "/drawing/params/FontSize: expected a number of at least 1, found 0");
    EXPECT_EQ(error(R"({"kind": "remix", "shape": "line", "params": {"Alignment": "top"}})"),
              at + R"(/drawing/params/Alignment: expected one of left, center, right, found "top")");
    EXPECT_NE(error(R"({"kind": "remix", "shape": "line", "params": {"Colour": 1}})").find("/params/Colour"),
              std::string::npos);
}

} // namespace
