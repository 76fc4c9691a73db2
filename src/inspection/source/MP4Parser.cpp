#include "inspection/source/MP4Parser.h"

#include "inspection/source/DSExceptions.h"

#include <algorithm>
#include <array>

namespace DSMediaDetNS {

namespace {

constexpr std::uint32_t one2x30 = 0x40000000;

std::uint32_t versionOf(std::uint32_t versionAndFlags) {
    return versionAndFlags >> 24;
}

double fixed16x16(std::uint32_t word) {
    return static_cast<double>(static_cast<std::int32_t>(word)) / 65536;
}

} // namespace

bool MP4Parser::isContainer(const std::string& type) const {
    // Deliberate: `tkhd` and `stsd` are none, but their handlers stop where children may follow. What such an
    // atom still has is taken for atoms.
    return type == "moov" || type == "trak" || type == "tkhd" || type == "mdia" || type == "minf" ||
           type == "stbl" || type == "stsd";
}

void MP4Parser::onAtomBegin(const AtomHeader& atom) {
    if (atom.type == "mvhd")
        onMvhd(atom);
    else if (atom.type == "tkhd")
        onTkhd(atom);
    else if (atom.type == "hdlr")
        onHdlr(atom);
    else if (atom.type == "stsd")
        onStsd(atom);
}

void MP4Parser::onMvhd(const AtomHeader& /*atom*/) {
    // Deliberate: four bytes more than stand before the matrix (ISO/IEC 14496-12, 8.2.2). The last word then
    // lies behind it, and what ordinary files have there makes the identity.
    skip(versionOf(readWord()) == 0 ? 36 : 48);
    matrix = readMatrix();
}

void MP4Parser::onTkhd(const AtomHeader& /*atom*/) {
    TrackRecord track;
    const bool isShort = versionOf(readWord()) == 0;
    const auto readTime = [this, isShort] { return isShort ? readWord() : readLong(); };
    readTime(); // creation
    readTime(); // modification
    track.trackId = readWord();
    skip(4);
    readTime(); // duration
    skip(8);
    readShort(); // layer
    readShort(); // alternate group
    track.volume = readByte();
    readByte();
    skip(2);
    track.matrix = readMatrix();
    track.width = readShort();
    readShort();
    track.height = readShort();
    readShort();
    if (found.size() == mostTracks)
        throw MP4ParseException();
    found.push_back(track);
}

void MP4Parser::onHdlr(const AtomHeader& atom) {
    if (parent().type != "mdia")
        return;
    const std::string subtype = readHandlerSubtype(atom);
    TrackRecord& track = currentTrack();
    if (subtype == "vide")
        track.kind = 0;
    else if (subtype == "soun")
        track.kind = 1;
}

void MP4Parser::onStsd(const AtomHeader& atom) {
    readWord(); // version and flags
    const auto entryCount = static_cast<std::int32_t>(readWord());
    const std::uint64_t firstEntry = tell();
    readWord(); // size of the first entry
    if (readType() == "text") {
        seekToEndOf(atom);
        return;
    }
    seek(firstEntry);
    currentTrack();
    for (std::int32_t entry = 0; entry < entryCount; ++entry) {
        if (readEntry(atom) == AfterEntry::Stop)
            return;
    }
}

MP4Parser::AfterEntry MP4Parser::readEntry(const AtomHeader& stsd) {
    const std::uint64_t entryStart = tell();
    countAtomAt(entryStart);
    const std::uint32_t entrySize = readWord();
    const std::string format = readType();
    TrackRecord& track = currentTrack();
    *std::copy(format.begin(), format.end(), track.format) = '\0';
    if (format != "avc1") {
        seekToEndOf(stsd);
        return AfterEntry::Stop;
    }
    skip(24);
    track.codedWidth = static_cast<std::int16_t>(readShort());
    track.codedHeight = static_cast<std::int16_t>(readShort());
    skip(50);
    readEntryExtensions(tell() - entryStart, entrySize);
    // Deliberate: to the end of the atom after each entry, so that a second one is read from what follows the
    // atom, and the track has the type of the next atom as its format.
    seekToEndOf(stsd);
    return AfterEntry::Next;
}

void MP4Parser::readEntryExtensions(std::uint64_t used, std::uint64_t entrySize) {
    while (used < entrySize && entrySize - used >= 8) {
        const AtomHeader extension = readHeader();
        if (extension.type == "pasp") {
            TrackRecord& track = currentTrack();
            track.hSpacing = readWord();
            track.vSpacing = readWord();
        }
        used += extension.size;
        seekToEndOf(extension);
    }
}

/// The words stand in the order a b u c d v x y w; u, v and w have 30 bits behind the point, all else has 16.
DisplayMatrix MP4Parser::readMatrix() {
    std::array<std::uint32_t, 9> words{};
    for (std::uint32_t& word : words)
        word = readWord();
    if (words[2] != 0 || words[5] != 0 || words[8] != one2x30)
        return {};
    return {.a = fixed16x16(words[0]),
            .c = fixed16x16(words[3]),
            .b = fixed16x16(words[1]),
            .d = fixed16x16(words[4])};
}

TrackRecord& MP4Parser::currentTrack() {
    if (found.empty())
        found.emplace_back();
    return found.back();
}

} // namespace DSMediaDetNS
