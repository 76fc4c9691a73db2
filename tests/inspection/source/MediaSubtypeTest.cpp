#include "inspection/source/MediaSubtype.h"
#include "inspection/source/FileHandle.h"
#include "inspection/source/FileSignatures.h"
#include "platform/DirectShowGuids.h"

#include "inspection/source/GuidText.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals; // NOLINT(google-build-using-namespace): bytes that may be 0
using TestSupport::TempFolder;
using TestSupport::wideOf;

GUID subtypeOf(const std::string& name, const std::string& bytes) {
    const TempFolder temp;
    return MediaSubtypeForFile(wideOf(temp.write(name, bytes)));
}

/// Of a file whose name tells nothing.
GUID subtypeOf(const std::string& bytes) {
    return subtypeOf("file", bytes);
}

const std::string packHeader = "\x00\x00\x01\xBA\x21\x00\x01\x00\x01\x80\x00\x01\x00\x00\x01\xBB"s;

std::string videoCdHeader() {
    return "RIFF????CDXAfmt "s + std::string(20, '?') + "data????"s + "\x00"s + std::string(10, '\xFF') +
           "\x00"s;
}

TEST(MediaSubtypeForFile, KnowsAvi) {
    EXPECT_EQ(subtypeOf("RIFF????AVI "), MEDIASUBTYPE_Avi);
    EXPECT_EQ(subtypeOf("RIFF????AVI LIST and so on"), MEDIASUBTYPE_Avi);
    EXPECT_EQ(subtypeOf("RIFF????AVI"), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("RIFX????AVI "), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, KnowsAFrameOfMpegAudio) {
    EXPECT_EQ(subtypeOf("\xFF\xFB"), MEDIASUBTYPE_MPEG1Audio);
    EXPECT_EQ(subtypeOf("\xFF\xE0\x00"s), MEDIASUBTYPE_MPEG1Audio);
    EXPECT_EQ(subtypeOf("\xFF\xDF"), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("\xFE\xFB"), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("\xFF"), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, KnowsWave) {
    EXPECT_EQ(subtypeOf("RIFF????WAVEfmt "), MEDIASUBTYPE_WAVE);
    EXPECT_EQ(subtypeOf("RIFF????WAVX"), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, KnowsMpegVideo) {
    EXPECT_EQ(subtypeOf("\x00\x00\x01\xB3"s), MEDIASUBTYPE_MPEG1Video);
    EXPECT_EQ(subtypeOf("\x00\x00\x01\xB4"s), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, KnowsAnMpegSystemStreamByItsMarkersAlone) {
    EXPECT_EQ(subtypeOf(packHeader), MEDIASUBTYPE_MPEG1System);
    EXPECT_EQ(subtypeOf("\x00\x00\x01\xBA\x2F\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x00\x00\x01\xBB"s),
              MEDIASUBTYPE_MPEG1System);
    for (const std::size_t marker : {4, 6, 8, 9, 11}) {
        std::string bytes = packHeader;
        bytes[marker] = '\0';
        EXPECT_EQ(subtypeOf(bytes), MEDIASUBTYPE_None) << marker;
    }
    EXPECT_EQ(subtypeOf(packHeader.substr(0, 15)), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, KnowsAVideoCd) {
    EXPECT_EQ(subtypeOf(videoCdHeader()), MEDIASUBTYPE_MPEG1VideoCD);
    EXPECT_EQ(subtypeOf(videoCdHeader() + "more"), MEDIASUBTYPE_MPEG1VideoCD);
}

TEST(MediaSubtypeForFile, WantsEachByteOfAVideoCd) {
    const std::string whole = videoCdHeader();
    for (std::size_t place = 0; place < whole.size(); ++place) {
        std::string bytes = whole;
        bytes[place] = static_cast<char>(bytes[place] ^ 1);
        const bool isFree =
            (place >= 4 && place < 8) || (place >= 16 && place < 36) || (place >= 40 && place < 44);
        EXPECT_EQ(subtypeOf(bytes), isFree ? MEDIASUBTYPE_MPEG1VideoCD : MEDIASUBTYPE_None) << place;
    }
}

TEST(MediaSubtypeForFile, NeverKnowsAnId3TagByItsBytes) {
    EXPECT_EQ(subtypeOf("ID3\x03\x00\x00\x00\x00\x00\x00more"s), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("ID3\x03\x00\x80\x80\x80\x80\x00more"s), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("a.mp3", "ID3\x03\x00\x00\x00\x00\x00\x00more"s), MEDIASUBTYPE_MPEG1Audio);
}

TEST(MediaSubtypeForFile, BelievesTheBytesBeforeTheExtension) {
    EXPECT_EQ(subtypeOf("a.mp3", "RIFF????WAVEfmt "), MEDIASUBTYPE_WAVE);
    EXPECT_EQ(subtypeOf("a.mp4", "\x00\x00\x01\xB3"s), MEDIASUBTYPE_MPEG1Video);
}

TEST(MediaSubtypeForFile, FallsBackToTheExtension) {
    EXPECT_EQ(subtypeOf("a.avi", "unknown"), MEDIASUBTYPE_Avi);
    EXPECT_EQ(subtypeOf("a.mp3", "unknown"), MEDIASUBTYPE_MPEG1Audio);
    EXPECT_EQ(subtypeOf("a.wav", "unknown"), MEDIASUBTYPE_WAVE);
    EXPECT_EQ(subtypeOf("a.mpg", "unknown"), MEDIASUBTYPE_MPEG1System);
    EXPECT_EQ(subtypeOf("a.x.MPEG", "unknown"), MEDIASUBTYPE_MPEG1System);
    EXPECT_EQ(subtypeOf("a.mp4", "unknown"), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("avi", "unknown"), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, FallsBackToTheExtensionOfAFileOfThreeBytes) {
    EXPECT_EQ(subtypeOf("a.wav", "RIF"), MEDIASUBTYPE_WAVE);
    EXPECT_EQ(subtypeOf("RIF"), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("a.avi", ""), MEDIASUBTYPE_Avi);
}

TEST(MediaSubtypeForFile, IsNoneForRecordingsWhateverTheyBeginWith) {
    EXPECT_EQ(subtypeOf("a.mosk", "RIFF????AVI "), MEDIASUBTYPE_None);
    EXPECT_EQ(subtypeOf("a.MOSK", "RIFF????AVI "), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, IsNoneForWhatCannotBeRead) {
    const TempFolder temp;
    EXPECT_EQ(MediaSubtypeForFile(wideOf(temp / "missing.avi")), MEDIASUBTYPE_None);
    std::filesystem::create_directory(temp / "folder.avi");
    EXPECT_EQ(MediaSubtypeForFile(wideOf(temp / "folder.avi")), MEDIASUBTYPE_None);
    EXPECT_EQ(MediaSubtypeForFile(L""), MEDIASUBTYPE_None);
}

TEST(MediaSubtypeForFile, KnowsFilesThatOthersWrote) {
    EXPECT_EQ(MediaSubtypeForFile(wideOf(videoPath("mpeg4.avi"))), MEDIASUBTYPE_Avi);
    EXPECT_EQ(MediaSubtypeForFile(wideOf(videoPath("mpeg2.mpg"))), MEDIASUBTYPE_MPEG1System);
    EXPECT_EQ(MediaSubtypeForFile(wideOf(videoPath("h264.mp4"))), MEDIASUBTYPE_None);
}

TEST(FileSignatures, StandInTheirOrder) {
    std::vector<GUID> subtypes;
    for (const FileSignature& signature : FileSignatures())
        subtypes.push_back(signature.subtype);
    EXPECT_EQ(subtypes, (std::vector<GUID>{MEDIASUBTYPE_Avi, MEDIASUBTYPE_MPEG1Audio, MEDIASUBTYPE_MPEG1Audio,
                                           MEDIASUBTYPE_WAVE, MEDIASUBTYPE_MPEG1Video,
                                           MEDIASUBTYPE_MPEG1System, MEDIASUBTYPE_MPEG1VideoCD}));
}

TEST(FileSignatures, HaveAMaskAndAValueForEachByte) {
    for (const FileSignature& signature : FileSignatures()) {
        for (const SignaturePattern& pattern : signature.patterns) {
            EXPECT_EQ(pattern.mask.size(), pattern.byteCount);
            EXPECT_EQ(pattern.value.size(), pattern.byteCount);
        }
    }
}

/// Whether a file of these bytes matches a signature of one pattern.
bool matches(const std::string& bytes, const SignaturePattern& pattern) {
    const TempFolder temp;
    FileHandle file;
    EXPECT_TRUE(file.open(wideOf(temp.write("file", bytes))));
    return MatchesSignature(file, {MEDIASUBTYPE_None, {&pattern, 1}});
}

TEST(MatchesSignature, CountsANegativeOffsetFromTheEnd) {
    EXPECT_TRUE(matches("some text", {-4, 4, "\xFF\xFF\xFF\xFF", "text"}));
    EXPECT_FALSE(matches("text some", {-4, 4, "\xFF\xFF\xFF\xFF", "text"}));
}

TEST(MatchesSignature, FailsWhereNothingCanBeRead) {
    EXPECT_FALSE(matches("abc", {-4, 1, "\xFF", "a"})) << "before the start";
    EXPECT_FALSE(matches("abc", {3, 1, "\xFF", "a"})) << "at the end";
    EXPECT_FALSE(matches("abc", {-1, 2, "\xFF\xFF", "c?"})) << "across the end";
}

TEST(MatchesSignature, FailsForAPatternWhosePartsDifferInLength) {
    EXPECT_TRUE(matches("abc", {0, 2, "\xFF\xFF", "ab"}));
    EXPECT_FALSE(matches("abc", {0, 2, "\xFF", "ab"}));
    EXPECT_FALSE(matches("abc", {0, 2, "\xFF\xFF", "a"}));
    EXPECT_FALSE(matches("abc", {0, 1, "\xFF\xFF", "ab"}));
}

TEST(MatchesSignature, WantsAllPatterns) {
    const TempFolder temp;
    FileHandle file;
    ASSERT_TRUE(file.open(wideOf(temp.write("file", std::string("abc")))));
    const std::vector<SignaturePattern> both = {{0, 1, "\xFF", "a"}, {2, 1, "\xFF", "c"}};
    const std::vector<SignaturePattern> one = {{0, 1, "\xFF", "a"}, {2, 1, "\xFF", "x"}};
    EXPECT_TRUE(MatchesSignature(file, {MEDIASUBTYPE_None, both}));
    EXPECT_FALSE(MatchesSignature(file, {MEDIASUBTYPE_None, one}));
}

TEST(DirectShowGuids, HaveTheirPublishedValues) {
    const std::string family = "-524F-11CE-9F53-0020AF0BA770}";
    EXPECT_EQ(guidText(MEDIASUBTYPE_MPEG1System), "{E436EB84" + family);
    EXPECT_EQ(guidText(MEDIASUBTYPE_MPEG1VideoCD), "{E436EB85" + family);
    EXPECT_EQ(guidText(MEDIASUBTYPE_MPEG1Video), "{E436EB86" + family);
    EXPECT_EQ(guidText(MEDIASUBTYPE_MPEG1Audio), "{E436EB87" + family);
    EXPECT_EQ(guidText(MEDIASUBTYPE_Avi), "{E436EB88" + family);
    EXPECT_EQ(guidText(MEDIASUBTYPE_WAVE), "{E436EB8B" + family);
    EXPECT_EQ(guidText(MEDIASUBTYPE_None), "{E436EB8E" + family);
    EXPECT_EQ(guidText(CLSID_AsyncReader), "{E436EBB5" + family);
    EXPECT_EQ(guidText(CLSID_WMAsfReader), "{187463A0-5BB7-11D3-ACBE-0080C75E246E}");
    EXPECT_EQ(guidText(GUID_NULL), "{00000000-0000-0000-0000-000000000000}");
}

} // namespace
