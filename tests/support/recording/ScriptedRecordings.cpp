#include "support/recording/ScriptedRecordings.h"

#include "platform/MOSK.h"

#include <boost/make_shared.hpp>

#include <cassert>
#include <cstring>
#include <utility>

namespace TestSupport {

namespace {

ScriptedRecordings* current = nullptr;

class Track : public MOSK::MP4TrackReader {
public:
    explicit Track(ScriptedTrack scripted)
        : script(std::move(scripted)) {}

    std::int32_t kind() const override { return script.kind; }
    std::string format() const override { return "test"; }
    std::int32_t typeCode() const override { return script.typeCode; }
    unsigned int width() const override { return script.width; }
    unsigned int height() const override { return script.height; }

    bool decodeFrameAtTime(double seconds, unsigned char* buffer, unsigned int size,
                           double* actualTime) override {
        current->frameCalls.push_back({seconds, size, actualTime != nullptr});
        if (!script.pixelAt || size < script.width * script.height * 4)
            return false;
        for (unsigned int i = 0; i < script.width * script.height; ++i) {
            const std::uint32_t pixel =
                script.pixelAt(static_cast<int>(i % script.width), static_cast<int>(i / script.width));
            std::memcpy(buffer + std::size_t{i} * 4, &pixel, sizeof pixel);
        }
        return true;
    }

private:
    ScriptedTrack script;
};

class Reader : public MOSK::Reader {
public:
    explicit Reader(std::vector<ScriptedTrack> scripted)
        : script(std::move(scripted)) {}

    std::vector<boost::shared_ptr<MOSK::MP4TrackReader>> tracks() override {
        std::vector<boost::shared_ptr<MOSK::MP4TrackReader>> made;
        for (const ScriptedTrack& track : script)
            made.push_back(boost::make_shared<Track>(track));
        return made;
    }

private:
    std::vector<ScriptedTrack> script;
};

} // namespace

ScriptedRecordings::ScriptedRecordings() {
    assert(!current);
    current = this;
}

ScriptedRecordings::~ScriptedRecordings() {
    current = nullptr;
}

} // namespace TestSupport

namespace MOSK {

AudioFormat AudioFormat::create16BitSignedInterleaved(int sampleRate, int channels) {
    return {sampleRate, channels};
}

boost::shared_ptr<Reader> Reader::create(const std::string& path, const AudioFormat& audioFormat,
                                         AACDecoderFactory* decoderFactory) {
    TestSupport::ScriptedRecordings* const script = TestSupport::current;
    if (!script)
        return {};
    script->requests.push_back(
        {path, audioFormat.sampleRate(), audioFormat.channels(), decoderFactory != nullptr});
    if (script->onOpen)
        script->onOpen(path);
    const auto found = script->tracksOf.find(path);
    if (found == script->tracksOf.end())
        return {};
    return boost::make_shared<TestSupport::Reader>(found->second);
}

} // namespace MOSK
