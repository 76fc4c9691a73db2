#pragma once

#include "inspection/source/MP4ParserBase.h"

/// The part of a display matrix that turns and scales (ISO/IEC 14496-12, 6.2.2).
struct DisplayMatrix {
    double a = 1;
    double c = 0;
    double b = 0;
    double d = 1;
};

struct TrackRecord {
    std::int32_t kind = 2;     ///< 0 video, 1 audio, 2 other
    std::uint32_t width = 0;   ///< at which it is shown
    std::uint32_t height = 0;  ///< at which it is shown
    std::uint32_t volume = 0;  ///< its integer part
    std::uint32_t trackId = 0; ///< the file's number for it
    DisplayMatrix matrix;
    std::int32_t codedWidth = 0;
    std::int32_t codedHeight = 0;
    char format[8] = {};        ///< four characters and a terminator
    std::uint32_t hSpacing = 1; ///< of the pixels' aspect
    std::uint32_t vSpacing = 1;
};

namespace DSMediaDetNS {

/// Reads sizes, pixel aspect and display matrices of an MP4 or MOV file.
class MP4Parser : public MP4ParserBase {
public:
    using MP4ParserBase::MP4ParserBase;

    // What was found; also after `parse` has thrown.
    const DisplayMatrix& movieMatrix() const { return matrix; }
    const std::vector<TrackRecord>& tracks() const { return found; }

protected:
    bool isContainer(const std::string& type) const override;
    void onAtomBegin(const AtomHeader& atom) override;

    virtual void onMvhd(const AtomHeader& atom);
    virtual void onTkhd(const AtomHeader& atom);
    virtual void onHdlr(const AtomHeader& atom);
    virtual void onStsd(const AtomHeader& atom);

private:
    enum class AfterEntry { Next, Stop };

    DisplayMatrix readMatrix();
    TrackRecord& currentTrack();
    AfterEntry readEntry(const AtomHeader& stsd);
    void readEntryExtensions(std::uint64_t used, std::uint64_t entrySize);

    DisplayMatrix matrix;
    std::vector<TrackRecord> found;
};

} // namespace DSMediaDetNS
