#include "inspection/source/DSExceptions.h"
#include "inspection/source/MP4Parser.h"
#include "inspection/source/MP4ParserFindStreamTypes.h"

#include "inspection/source/MemoryReader.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// Walks a file as far as that goes.
template <class Parser>
void walk(Parser& parser) {
    try {
        parser.parse(L"");
    } catch (const MP4ParseException&) {
        return; // what was found stays
    }
}

void checkMatrix(const DisplayMatrix& matrix) {
    for (const double value : {matrix.a, matrix.b, matrix.c, matrix.d})
        require(std::abs(value) <= 32768);
}

void checkStreamTypes(const std::string& bytes) {
    MP4ParserFindStreamTypes parser(std::make_unique<MemoryReader>(bytes));
    walk(parser);
    require(parser.streamTypes().size() <= MP4ParserBase::mostTracks);
    for (const StreamTypeRecord& stream : parser.streamTypes()) {
        require(stream.trackType >= 0 && stream.trackType <= 2);
        require(stream.format.empty() || stream.format.size() == 4);
    }
}

void checkTracks(const std::string& bytes) {
    DSMediaDetNS::MP4Parser parser(std::make_unique<MemoryReader>(bytes));
    walk(parser);
    checkMatrix(parser.movieMatrix());
    require(parser.tracks().size() <= MP4ParserBase::mostTracks);
    for (const TrackRecord& track : parser.tracks()) {
        require(track.kind >= 0 && track.kind <= 2);
        require(track.width <= 0xFFFF && track.height <= 0xFFFF && track.volume <= 0xFF);
        require(track.format[4] == '\0');
        checkMatrix(track.matrix);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    checkStreamTypes(bytes);
    checkTracks(bytes);
    return 0;
}
