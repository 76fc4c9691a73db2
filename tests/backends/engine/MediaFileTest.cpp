#include "engine/Engine.h"
#include "engine/EngineModule.h"

#include "support/FrameNumber.h"
#include "support/TempFolder.h"
#include "support/video/MemorySource.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace EngineBackend {
namespace {

using TestSupport::readFile;
using TestSupport::TempFolder;

Result<std::unique_ptr<IMediaFile>> openSource(std::unique_ptr<IByteSource> source) {
    const auto loaded = engine();
    return loaded ? (*loaded)->openSource(std::move(source), "test") : tl::unexpected(loaded.error());
}

std::unique_ptr<IMediaFile> open(const std::string& name) {
    auto file = openMediaFile(videoPath(name));
    return file ? std::move(*file) : nullptr;
}

std::optional<int> numberAt(IVideoReader& reader, Rational time) {
    const auto found = reader.pictureAt(time, {});
    if (!found)
        return std::nullopt;
    const Picture& picture = *found->picture;
    return FrameNumber::read(picture.pixels.get(), picture.size.width, picture.size.height, picture.stride());
}

ErrorKind errorOf(const std::string& path) {
    const auto file = openMediaFile(path);
    return file ? ErrorKind::Damaged : file.error().kind;
}

TEST(MediaFile, TellsWhatItsStreamsAre) {
    const auto file = open("with-audio.mp4");
    ASSERT_TRUE(file);
    ASSERT_EQ(file->streams().size(), 2);
    const StreamFacts& video = file->streams()[0];
    EXPECT_EQ(video.kind, StreamKind::Video);
    EXPECT_EQ(video.codec, "h264");
    EXPECT_EQ(video.id, 1);
    EXPECT_EQ(video.frameCount, 90);
    EXPECT_EQ(video.duration, Rational(90, 25));
    EXPECT_EQ(video.startTime, Rational(0));
    EXPECT_EQ(video.video.codedSize, (PictureSize{128, 96}));
    EXPECT_EQ(video.video.averageFrameRate, Rational(25));
    EXPECT_EQ(video.video.realFrameRate, Rational(25));
    const StreamFacts& audio = file->streams()[1];
    EXPECT_EQ(audio.kind, StreamKind::Audio);
    EXPECT_EQ(audio.codec, "aac");
    EXPECT_EQ(audio.audio.sampleRate, 44100);
    EXPECT_EQ(audio.audio.channels, 1);
    EXPECT_GT(file->duration(), Rational(5));
    EXPECT_EQ(file->bestVideoStream(), 0);
}

TEST(MediaFile, CountsTimeFromItsEarliestStream) {
    const auto file = open("empty-edit-audio.mp4");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->streams()[0].startTime, Rational(3, 5));
    EXPECT_EQ(file->streams()[1].startTime, Rational(0));
}

TEST(MediaFile, TellsItsKeyFrames) {
    const auto file = open("h264.mp4");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->keyFrameTimes(0).size(), 3);
    EXPECT_TRUE(file->keyFrameTimes(7).empty());
}

TEST(MediaFile, HasNoVideoStreamWhereThereIsOnlySound) {
    const auto file = open("tone.m4a");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->bestVideoStream(), -1);
    EXPECT_EQ(file->readVideo(-1, {}).error().kind, ErrorKind::NoSuchStream);
    EXPECT_EQ(file->readVideo(0, {}).error().kind, ErrorKind::NoSuchStream);
}

TEST(MediaFile, IsReadFromAnySource) {
    for (const char* name : {"h264.mp4", "h264.mkv", "h264.ts", "mpeg4.avi", "mpeg2.mpg"}) {
        const auto file = openSource(std::make_unique<MemorySource>(readFile(videoPath(name))));
        ASSERT_TRUE(file) << name;
        const auto reader = (*file)->readVideo((*file)->bestVideoStream(), {});
        ASSERT_TRUE(reader) << name;
        for (const int frame : {50, 7, 89, 0})
            EXPECT_EQ(numberAt(**reader, Rational(frame, 25)), frame) << name;
    }
}

TEST(MediaFile, MayBeGoneWhileItsReaderReads) {
    auto file = open("h264.mp4");
    ASSERT_TRUE(file);
    const auto reader = file->readVideo(0, {});
    file.reset();
    EXPECT_EQ(numberAt(**reader, Rational(50, 25)), 50);
}

class UnseekableSource : public MemorySource {
public:
    using MemorySource::MemorySource;
    bool canSeek() const override { return false; }
    std::int64_t size() const override { return -1; }
};

TEST(MediaFile, GoesForwardInASourceThatCannotSeek) {
    const auto file = openSource(std::make_unique<UnseekableSource>(readFile(videoPath("fragmented.mp4"))));
    ASSERT_TRUE(file);
    const auto reader = (*file)->readVideo(0, {});
    ASSERT_TRUE(reader);
    for (const int frame : {0, 1, 40, 41, 89})
        EXPECT_EQ(numberAt(**reader, Rational(frame, 25)), frame);
    EXPECT_FALSE((*reader)->pictureAt(Rational(20, 25), {}));
}

class FailingSource : public MemorySource {
public:
    using MemorySource::MemorySource;
    std::int64_t read(std::span<std::byte>) override { throw std::runtime_error("the medium is gone"); }
};

TEST(MediaFile, CannotBeReadFromASourceThatThrows) {
    const auto file = openSource(std::make_unique<FailingSource>(readFile(videoPath("h264.mp4"))));
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().kind, ErrorKind::NotMedia);
}

class InterruptedSource : public MemorySource {
public:
    InterruptedSource(std::string content, const bool& interrupted)
        : MemorySource(std::move(content))
        , isInterrupted(interrupted) {}
    std::int64_t read(std::span<std::byte> into) override {
        return isInterrupted ? -1 : MemorySource::read(into);
    }

private:
    const bool& isInterrupted;
};

TEST(MediaFile, IsReadOnWhenItsSourceComesBack) {
    for (const char* name : {"h264.mp4", "h264.mkv", "no-cues.mkv", "h264.ts", "mpeg4.avi", "mpeg2.mpg",
                             "h264.flv", "h264.h264", "wmv2.wmv", "vp9.webm"}) {
        bool isInterrupted = false;
        const auto file =
            openSource(std::make_unique<InterruptedSource>(readFile(videoPath(name)), isInterrupted));
        ASSERT_TRUE(file) << name;
        const auto reader = (*file)->readVideo((*file)->bestVideoStream(), {});
        ASSERT_TRUE(reader) << name;
        isInterrupted = true;
        (void)numberAt(**reader, Rational(80, 25));
        (void)numberAt(**reader, Rational(10, 25));
        isInterrupted = false;
        for (const int frame : {50, 7, 89, 0})
            EXPECT_EQ(numberAt(**reader, Rational(2 * frame + 1, 50)), frame) << name;
    }
}

/// Gives little at once, and no more than `bytesLeft`.
class TricklingSource : public MemorySource {
public:
    TricklingSource(std::string content, const std::size_t& bytesLeft)
        : MemorySource(std::move(content))
        , left(bytesLeft) {}
    std::int64_t read(std::span<std::byte> into) override {
        return bytesRead >= left
                   ? -1
                   : count(MemorySource::read(into.first(std::min<std::size_t>(into.size(), 4096))));
    }
    void restart() { bytesRead = 0; }

private:
    std::int64_t count(std::int64_t got) {
        bytesRead += static_cast<std::size_t>(got);
        return got;
    }

    const std::size_t& left;
    std::size_t bytesRead = 0;
};

TEST(MediaFile, ForgetsWhatItGaveWhileItsSourceWasAway) {
    for (const char* name : {"uncompressed.avi", "numbers-90.y4m"})
        for (const std::size_t kilobytes : {1, 100}) {
            std::size_t bytesLeft = std::string::npos;
            auto source = std::make_unique<TricklingSource>(readFile(videoPath(name)), bytesLeft);
            TricklingSource& trickle = *source;
            const auto file = openSource(std::move(source));
            ASSERT_TRUE(file) << name;
            const auto reader = (*file)->readVideo((*file)->bestVideoStream(), {});
            ASSERT_TRUE(reader) << name;
            EXPECT_EQ(numberAt(**reader, Rational(5, 50)), 2) << name;
            trickle.restart();
            bytesLeft = kilobytes * 1024;
            (void)numberAt(**reader, Rational(41, 50));
            bytesLeft = std::string::npos;
            EXPECT_EQ(numberAt(**reader, Rational(43, 50)), 21) << name << " after " << kilobytes;
            EXPECT_EQ(numberAt(**reader, Rational(41, 50)), 20) << name << " after " << kilobytes;
        }
}

TEST(MediaFile, CanBeAskedAgainWhenItsBeginningCouldNotBeReadAgain) {
    const std::string whole = readFile(videoPath("fragmented.mp4"));
    const std::string withoutFrames = whole.substr(0, whole.find("moof") - 4);
    bool isInterrupted = false;
    const auto file = openSource(std::make_unique<InterruptedSource>(withoutFrames, isInterrupted));
    ASSERT_TRUE(file);
    const auto reader = (*file)->readVideo(0, {});
    ASSERT_TRUE(reader);
    EXPECT_EQ(numberAt(**reader, 0), std::nullopt);
    isInterrupted = true;
    EXPECT_EQ(numberAt(**reader, 0), std::nullopt);
    EXPECT_EQ(numberAt(**reader, 0), std::nullopt);
    EXPECT_EQ((*file)->format(), "mov,mp4,m4a,3gp,3g2,mj2");
}

TEST(MediaFile, TellsWhyItCannotBeOpened) {
    const TempFolder folder;
    EXPECT_EQ(errorOf((folder / "missing.mp4").string()), ErrorKind::Unreadable);
    EXPECT_EQ(errorOf((folder / "").string()), ErrorKind::Unreadable);
    EXPECT_EQ(errorOf(folder.write("text.mp4", "This is no video.\n").string()), ErrorKind::NotMedia);
}

TEST(MediaFile, NamesItselfInMessages) {
    const TempFolder folder;
    const std::string path = folder.write("text.mp4", "This is no video.\n").string();
    EXPECT_EQ(openMediaFile(path).error().message.rfind(path + ": ", 0), 0);
}

TEST(VideoReader, RefusesMorePixelsThanTheBudget) {
    const TempFolder folder;
    std::string content = readFile(videoPath("h264.mp4"));
    // ISO/IEC 14496-12, 12.1.3: width and height of a sample entry, 16 bits each.
    content.replace(content.find("avc1", content.find("stsd")) + 28, 4, "\xFF\xFF\xFF\xFF");
    const auto file = openMediaFile(folder.write("large.mp4", content).string());
    ASSERT_TRUE(file);
    const auto reader = (*file)->readVideo(0, {});
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error().kind, ErrorKind::TooLarge);
}

TEST(VideoReader, GivesTheSamePicturesWithOneThread) {
    const auto file = open("h264.mp4");
    ASSERT_TRUE(file);
    const auto reader = file->readVideo(0, {.readersAtOnce = 1000});
    ASSERT_TRUE(reader);
    for (const int frame : {89, 44, 45, 46, 3})
        EXPECT_EQ(numberAt(**reader, Rational(frame, 25)), frame);
}

TEST(VideoReader, GivesACoverAtAnyTime) {
    const auto file = open("cover.m4a");
    ASSERT_TRUE(file);
    const int stream = file->bestVideoStream();
    ASSERT_GE(stream, 0);
    EXPECT_TRUE(file->streams()[static_cast<std::size_t>(stream)].video.isAttachedPicture);
    const auto reader = file->readVideo(stream, {});
    ASSERT_TRUE(reader);
    EXPECT_EQ(numberAt(**reader, 0), 0);
    EXPECT_EQ(numberAt(**reader, 3), 0);
}

} // namespace
} // namespace EngineBackend
