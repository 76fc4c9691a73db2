#include "inspection/source/MP4ParserFindStreamTypes.h"

#include "inspection/source/DSExceptions.h"

bool MP4ParserFindStreamTypes::isContainer(const std::string& type) const {
    return type == "moov" || type == "trak" || type == "mdia" || type == "minf" || type == "stbl";
}

void MP4ParserFindStreamTypes::onAtomBegin(const AtomHeader& atom) {
    if (atom.type == "stsd")
        onStsd(atom);
    else if (atom.type == "hdlr")
        onHdlr(atom);
    else if (atom.type == "tkhd")
        onTkhd(atom);
}

void MP4ParserFindStreamTypes::onAtomEnd(const AtomHeader& atom) {
    if (atom.type != "trak")
        return;
    if (found.size() == mostTracks)
        throw MP4ParseException();
    // Deliberate: the two are not reset, so a track without `stsd` has the format of the one before.
    found.push_back({trackType, format});
}

void MP4ParserFindStreamTypes::onStsd(const AtomHeader& /*atom*/) {
    readWord(); // version and flags
    readWord(); // count of entries
    readWord(); // size of the first
    format = readType();
}

void MP4ParserFindStreamTypes::onHdlr(const AtomHeader& atom) {
    if (parent().type != "mdia")
        return;
    const std::string subtype = readHandlerSubtype(atom);
    trackType = subtype == "vide" ? 0 : subtype == "soun" ? 1 : 2;
}

// Deliberate: the layout of version 0 for every version (ISO/IEC 14496-12, 8.3.2). `hdlr` comes later in
// a track, and then it decides.
void MP4ParserFindStreamTypes::onTkhd(const AtomHeader& /*atom*/) {
    readWord(); // version and flags
    readWord(); // creation
    readWord(); // modification
    readWord(); // track
    skip(4);
    readWord(); // duration
    skip(8);
    readShort(); // layer
    readShort(); // alternate group
    const std::uint8_t volume = readByte();
    readByte();
    skip(2);
    skip(36); // matrix
    const std::uint16_t width = readShort();
    readShort();
    const std::uint16_t height = readShort();
    readShort();
    trackType = width != 0 && height != 0 ? 0 : volume > 0 ? 1 : 2;
}
