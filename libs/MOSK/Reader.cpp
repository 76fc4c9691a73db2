#include "platform/MOSK.h"

#include "MOSK/Recording.h"
#include "MOSK/TrackReader.h"

#include <boost/make_shared.hpp>

#include <new>

namespace MOSK {

namespace {

class EngineReader : public Reader {
public:
    explicit EngineReader(const std::shared_ptr<Recording>& recording) {
        for (const EngineBackend::StreamFacts& track : recording->tracks())
            all.push_back(boost::make_shared<TrackReader>(recording, track));
    }

    std::vector<boost::shared_ptr<MP4TrackReader>> tracks() override { return all; }

private:
    std::vector<boost::shared_ptr<MP4TrackReader>> all;
};

} // namespace

boost::shared_ptr<Reader> Reader::create(const std::string& path, const AudioFormat& /*audioFormat*/,
                                         AACDecoderFactory* /*decoderFactory*/) {
    try {
        const auto recording = Recording::open(path);
        return recording ? boost::make_shared<EngineReader>(*recording) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace MOSK
