#include "inspection/source/MP4ParserBase.h"

#include "inspection/source/DSExceptions.h"

#include <array>
#include <utility>

namespace {

constexpr std::uint64_t smallestAtom = 8;

} // namespace

MP4ParserBase::MP4ParserBase(std::unique_ptr<IStreamReader> source)
    : reader(std::move(source)) {}

MP4ParserBase::~MP4ParserBase() = default;

void MP4ParserBase::parse(const std::wstring& path) {
    depth = 0;
    atomStack.clear();
    nextNew = 0;
    atomsRead = 0;
    atomsReadAgain = 0;
    reader->open(path);
    fileSize = reader->size();
    walk(fileSize);
}

std::string MP4ParserBase::indent() const {
    return std::string(static_cast<std::size_t>(depth) * 2, ' ');
}

bool MP4ParserBase::isContainer(const std::string& type) const {
    return type == "moov" || type == "trak" || type == "mdia" || type == "minf" || type == "stbl" ||
           type == "QRLM";
}

void MP4ParserBase::onAtomBegin(const AtomHeader& /*atom*/) {}

void MP4ParserBase::onAtomEnd(const AtomHeader& /*atom*/) {}

void MP4ParserBase::onLeafAtom(const AtomHeader& /*atom*/) {}

void MP4ParserBase::processAtom(const AtomHeader& atom) {
    if (++depth > mostLevels)
        throw MP4ParseException();
    atomStack.push_back(atom);
    onAtomBegin(atom);
    if (isContainer(atom.type))
        walk(atom.offset + atom.size);
    else
        onLeafAtom(atom);
    onAtomEnd(atom);
    atomStack.pop_back();
    --depth;
}

void MP4ParserBase::walk(std::uint64_t end) {
    while (tell() < end) {
        const AtomHeader atom = readHeader();
        processAtom(atom);
        // Deliberate: no guard against a size smaller than the header. The next atom is wherever this leads.
        seekToEndOf(atom);
    }
}

AtomHeader MP4ParserBase::readHeader() {
    AtomHeader atom;
    atom.offset = tell();
    countAtomAt(atom.offset);
    atom.size = readWord();
    atom.type = readType();
    if (atom.size == 1)
        atom.size = readLong();
    else if (atom.size == 0)
        atom.size = fileSize - atom.offset;
    atom.headerSize = tell() - atom.offset;
    return atom;
}

AtomHeader MP4ParserBase::parent() const {
    // Deliberate: a stack of two has a parent, too, but it is not told.
    return atomStack.size() < 3 ? AtomHeader() : atomStack[atomStack.size() - 2];
}

void MP4ParserBase::countAtomAt(std::uint64_t offset) {
    if (offset >= nextNew)
        nextNew = offset + smallestAtom;
    else
        ++atomsReadAgain;
    if (++atomsRead > mostAtoms || atomsReadAgain > mostAtomsReadAgain)
        throw MP4ParseException();
}

template <class Number>
Number MP4ParserBase::readNumber() {
    std::array<std::uint8_t, sizeof(Number)> bytes{};
    reader->read(bytes.data(), bytes.size());
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes)
        number = number << 8 | byte;
    return static_cast<Number>(number);
}

std::uint8_t MP4ParserBase::readByte() {
    return readNumber<std::uint8_t>();
}

std::uint16_t MP4ParserBase::readShort() {
    return readNumber<std::uint16_t>();
}

std::uint32_t MP4ParserBase::readWord() {
    return readNumber<std::uint32_t>();
}

std::uint64_t MP4ParserBase::readLong() {
    return readNumber<std::uint64_t>();
}

std::string MP4ParserBase::readType() {
    std::array<char, 4> type{};
    reader->read(type.data(), type.size());
    return {type.data(), type.size()};
}

void MP4ParserBase::skip(std::uint64_t count) {
    seek(tell() + count);
}

std::string MP4ParserBase::readHandlerSubtype(const AtomHeader& hdlr) {
    readWord();
    readType(); // of the component
    const std::string subtype = readType();
    readWord();
    readWord();
    readWord();
    // Deliberate: 8 bytes more than the name has, beyond the end of the atom.
    passOver(hdlr.size - 24);
    return subtype;
}

/// As reading these bytes would do, which are not needed: they have to lie within the file.
void MP4ParserBase::passOver(std::uint64_t count) {
    const std::uint64_t position = tell();
    if (position > fileSize || count > fileSize - position)
        throw MP4ParseException();
    seek(position + count);
}
