#pragma once

#include "inspection/source/MP4ParserBase.h"
#include "inspection/source/StreamTypes.h"

/// Tells which kinds of track an MP4 or MOV file has, and in which formats their samples are.
class MP4ParserFindStreamTypes : public MP4ParserBase {
public:
    using MP4ParserBase::MP4ParserBase;

    /// Of each track in its order; also after `parse` has thrown.
    const std::vector<StreamTypeRecord>& streamTypes() const { return found; }

protected:
    bool isContainer(const std::string& type) const override;
    void onAtomBegin(const AtomHeader& atom) override;
    void onAtomEnd(const AtomHeader& atom) override;

    virtual void onStsd(const AtomHeader& atom);
    virtual void onHdlr(const AtomHeader& atom);
    virtual void onTkhd(const AtomHeader& atom);

private:
    std::int32_t trackType = 2;
    std::string format;
    std::vector<StreamTypeRecord> found;
};
