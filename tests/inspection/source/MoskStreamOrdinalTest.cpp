#include "inspection/source/MoskStreamOrdinal.h"
#include "inspection/source/MoskTrackList.h"
#include "platform/MOSK.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <stdexcept>

// This program has a library of recordings of its own, whose recordings hold what a test says.

namespace {

struct StoredTrack {
    std::int32_t kind;
    std::string format;
};

std::vector<StoredTrack> stored;

struct Asked {
    std::string path;
    int sampleRate = 0;
    int channels = 0;
    MOSK::AACDecoderFactory* factory = nullptr;
};

Asked asked;

class StoredTrackReader : public MOSK::MP4TrackReader {
public:
    explicit StoredTrackReader(StoredTrack track)
        : own(std::move(track)) {}

    std::int32_t kind() const override { return own.kind; }
    std::string format() const override { return own.format; }
    std::int32_t typeCode() const override { return 0; }
    unsigned int width() const override { return 0; }
    unsigned int height() const override { return 0; }
    bool decodeFrameAtTime(double /*seconds*/, unsigned char* /*buffer*/, unsigned int /*size*/,
                           double* /*actualTime*/) override {
        return false;
    }

private:
    StoredTrack own;
};

class StoredReader : public MOSK::Reader {
public:
    std::vector<boost::shared_ptr<MOSK::MP4TrackReader>> tracks() override {
        std::vector<boost::shared_ptr<MOSK::MP4TrackReader>> readers;
        for (const StoredTrack& track : stored)
            readers.push_back(boost::make_shared<StoredTrackReader>(track));
        return readers;
    }
};

} // namespace

namespace MOSK {

AudioFormat AudioFormat::create16BitSignedInterleaved(int sampleRate, int channels) {
    return {sampleRate, channels};
}

boost::shared_ptr<Reader> Reader::create(const std::string& path, const AudioFormat& audioFormat,
                                         AACDecoderFactory* decoderFactory) {
    asked = {path, audioFormat.sampleRate(), audioFormat.channels(), decoderFactory};
    if (path.find("missing") != std::string::npos)
        return {};
    if (path.find("broken") != std::string::npos)
        throw std::runtime_error("broken");
    return boost::make_shared<StoredReader>();
}

} // namespace MOSK

bool ReadMoskTrackList(const std::string& /*path*/,
                       std::vector<std::pair<std::int32_t, std::int32_t>>& /*tracks*/) {
    ADD_FAILURE() << "no track was asked for";
    return false;
}

namespace {

class MoskStreamOrdinalOf : public testing::Test {
protected:
    MoskStreamOrdinalOf() {
        asked = {};
        stored = {{0, "avc1"}, {1, "mp4a"}, {0, "qrl2"}, {2, "tmcd"}, {0, "avc1"}, {1, "mp4a"}, {0, "avc1"}};
    }
};

TEST_F(MoskStreamOrdinalOf, AVideoCountsTheVideosBeforeIt) {
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Svideo0.mp4"), 0);
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Svideo1.mp4"), 1);
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Svideo6.mp4"), 2);
}

TEST_F(MoskStreamOrdinalOf, ADataTrackCountsTheVideosBeforeItToo) {
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Strack6.qrl2"), 2);
}

TEST_F(MoskStreamOrdinalOf, AVideoDoesNotCountDataAndOtherTracks) {
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Svideo4.mp4"), 1);
}

TEST_F(MoskStreamOrdinalOf, ASoundCountsTheSoundsBeforeIt) {
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Saudio1.mp4"), 0);
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Saudio5.mp4"), 1);
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Saudio6.mp4"), 2);
}

TEST_F(MoskStreamOrdinalOf, ATrackThatIsNotThereIs0) {
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Svideo7.mp4"), 0);
    EXPECT_EQ(MoskStreamOrdinal(L"missing.mosk!Svideo6.mp4"), 0);
}

TEST_F(MoskStreamOrdinalOf, AnythingElseIs0) {
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk"), 0);
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!Audio.wav"), 0);
    asked = {};
    EXPECT_EQ(MoskStreamOrdinal(L"a.plumex!Svideo6.mp4"), 0);
    EXPECT_EQ(MoskStreamOrdinal(L"a.mosk!other6.mp4"), 0);
    EXPECT_EQ(MoskStreamOrdinal(L""), 0);
    EXPECT_EQ(asked.path, "") << "no file of another kind is opened";
}

TEST_F(MoskStreamOrdinalOf, ARecordingOpensItWithTwoChannels) {
    EXPECT_EQ(MoskStreamOrdinal(L"C:\\B\u00FCro\\a.MOSK!Svideo6.mp4"), 2);
    EXPECT_EQ(asked.path, "C:\\B\xC3\xBCro\\a.MOSK");
    EXPECT_EQ(asked.sampleRate, 44100);
    EXPECT_EQ(asked.channels, 2);
    EXPECT_EQ(asked.factory, nullptr);
}

TEST_F(MoskStreamOrdinalOf, ARecordingLetsExceptionsThrough) {
    EXPECT_THROW(MoskStreamOrdinal(L"broken.mosk!Svideo6.mp4"), std::runtime_error);
}

} // namespace
