#pragma once

#include "inspection/source/IStreamReader.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct AtomHeader {
    std::uint64_t offset = 0;     ///< of the atom's first byte
    std::uint64_t headerSize = 0; ///< 8, or 16 with a 64-bit size
    std::uint64_t size = 0;       ///< of the whole atom, its header included; anything that a file may say
    std::string type;             ///< its four bytes
};

/// Walks the tree of atoms of an MP4 file (ISO/IEC 14496-12, 4.2). What cannot be read ends the walk with
/// `MP4ParseException`, and leaves what was found until then. One thread at a time.
class MP4ParserBase {
public:
    explicit MP4ParserBase(std::unique_ptr<IStreamReader> source);
    virtual ~MP4ParserBase();
    MP4ParserBase(const MP4ParserBase&) = delete;
    MP4ParserBase& operator=(const MP4ParserBase&) = delete;

    /// Opens the file and walks to its end. Throws `MP4ParseException`.
    void parse(const std::wstring& path);

    // Atoms may claim any size, also one that leads back, and then they are read again. These limits end such
    // a walk with `MP4ParseException`; an honest file, whose atoms lie behind one another and nest six deep,
    // does not come near them.
    static constexpr std::uint32_t mostAtoms = 1U << 24;
    static constexpr std::uint32_t mostAtomsReadAgain = 1U << 12;
    static constexpr int mostLevels = 64;
    /// A file may consist of headers of tracks, and what is kept of each takes more memory than it has bytes.
    static constexpr std::size_t mostTracks = 1U << 14;

protected:
    /// Two blanks for each level of depth.
    virtual std::string indent() const;
    virtual bool isContainer(const std::string& type) const;
    /// Comes first for each atom, with the reader behind its header; where it leaves the reader, the children
    /// of a container begin.
    virtual void onAtomBegin(const AtomHeader& atom);
    virtual void onAtomEnd(const AtomHeader& atom);
    virtual void onLeafAtom(const AtomHeader& atom);
    virtual void processAtom(const AtomHeader& atom);

    AtomHeader readHeader();
    /// An empty header when the current atom has none; nor has a child of a top-level atom.
    AtomHeader parent() const;

    // Numbers are big-endian.
    std::uint8_t readByte();
    std::uint16_t readShort();
    std::uint32_t readWord();
    std::uint64_t readLong();
    std::string readType();
    void skip(std::uint64_t count);
    /// Of a `hdlr` atom, whose header was read: what kind of track it is in (ISO/IEC 14496-12, 8.4.3).
    std::string readHandlerSubtype(const AtomHeader& hdlr);
    void seek(std::uint64_t position) { reader->seek(position); }
    std::uint64_t tell() { return reader->tell(); }
    void seekToEndOf(const AtomHeader& atom) { seek(atom.offset + atom.size); }

    /// Every loop that a file controls says here where it reads next; throws at the limits above.
    void countAtomAt(std::uint64_t offset);

private:
    template <class Number>
    Number readNumber();
    void passOver(std::uint64_t count);
    void walk(std::uint64_t end);

    std::unique_ptr<IStreamReader> reader;
    std::uint64_t fileSize = 0;
    int depth = 0;
    std::vector<AtomHeader> atomStack;
    std::uint64_t nextNew = 0; ///< where the first atom can begin that was not read yet
    std::uint32_t atomsRead = 0;
    std::uint32_t atomsReadAgain = 0;
};
