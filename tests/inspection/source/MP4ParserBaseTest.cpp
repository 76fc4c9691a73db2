#include "inspection/source/MP4ParserBase.h"
#include "inspection/source/DSExceptions.h"

#include "inspection/source/MemoryReader.h"
#include "inspection/source/Mp4Bytes.h"

#include <gtest/gtest.h>

namespace {

using namespace Mp4Bytes; // NOLINT(google-build-using-namespace): the vocabulary of this file

/// Writes down what the walk comes upon.
class TracingParser : public MP4ParserBase {
public:
    explicit TracingParser(const std::string& bytes)
        : MP4ParserBase(std::make_unique<MemoryReader>(bytes)) {}

    /// Up to where the walk ended; "!" when it threw.
    std::string walked() {
        try {
            parse(L"");
        } catch (const MP4ParseException&) {
            trace += "!";
        }
        return trace;
    }

    std::vector<AtomHeader> headers;
    std::string skipInto; ///< a container whose handler takes four bytes
    std::vector<std::string> parents;

protected:
    void onAtomBegin(const AtomHeader& atom) override {
        trace += indent() + atom.type;
        headers.push_back(atom);
        parents.push_back(parent().type);
        if (atom.type == skipInto)
            skip(4);
    }
    void onAtomEnd(const AtomHeader& atom) override { trace += "/" + atom.type; }
    void onLeafAtom(const AtomHeader& /*atom*/) override { trace += "."; }

private:
    std::string trace;
};

std::string traceOf(const std::string& bytes) {
    return TracingParser(bytes).walked();
}

TEST(MP4ParserBase, WalksContainersAndToldLeavesInTheirOrder) {
    EXPECT_EQ(traceOf(ftyp() + atom("moov", atom("mvhd") + atom("trak", atom("tkhd"))) + atom("mdat")),
              "  ftyp./ftyp  moov    mvhd./mvhd    trak      tkhd./tkhd/trak/moov  mdat./mdat");
}

TEST(MP4ParserBase, KnowsSixContainers) {
    for (const char* type : {"moov", "trak", "mdia", "minf", "stbl", "QRLM"})
        EXPECT_EQ(traceOf(atom(type, atom("free"))), "  " + std::string(type) + "    free./free/" + type);
    for (const char* type : {"udta", "edts", "stsd", "tkhd", "MOOV"})
        EXPECT_EQ(traceOf(atom(type, atom("free"))), "  " + std::string(type) + "./" + type);
}

TEST(MP4ParserBase, ReadsA64BitSizeBehindTheType) {
    TracingParser parser(longAtom("mdat", "content") + atom("free"));
    EXPECT_EQ(parser.walked(), "  mdat./mdat  free./free");
    EXPECT_EQ(parser.headers[0].size, 23U);
    EXPECT_EQ(parser.headers[0].headerSize, 16U);
    EXPECT_EQ(parser.headers[1].offset, 23U);
    EXPECT_EQ(parser.headers[1].headerSize, 8U);
}

TEST(MP4ParserBase, LetsASizeOfZeroReachToTheEndOfTheFile) {
    TracingParser parser(ftyp() + atomOfSize(0, "mdat", atom("moov")));
    EXPECT_EQ(parser.walked(), "  ftyp./ftyp  mdat./mdat");
    EXPECT_EQ(parser.headers[1].size, 16U);
}

TEST(MP4ParserBase, LetsASizeOfZeroInAContainerReachToTheEndOfTheFile) {
    EXPECT_EQ(traceOf(atom("moov", atomOfSize(0, "free")) + atom("mdat")),
              "  moov    free./free/moov  mdat./mdat");
}

TEST(MP4ParserBase, PassesOverAnAtomThatClaimsMoreThanTheFileHas) {
    EXPECT_EQ(traceOf(atomOfSize(1000, "mdat", "content")), "  mdat./mdat");
}

TEST(MP4ParserBase, ThrowsInAContainerThatClaimsMoreThanTheFileHas) {
    EXPECT_EQ(traceOf(atomOfSize(1000, "moov", atom("free"))), "  moov    free./free!");
}

TEST(MP4ParserBase, LetsTheHandlerOfAContainerDecideWhereItsChildrenStart) {
    TracingParser parser(atom("moov", "skip" + atom("free")));
    parser.skipInto = "moov";
    EXPECT_EQ(parser.walked(), "  moov    free./free/moov");
}

TEST(MP4ParserBase, TellsTheParentFromTheThirdLevelOnAlone) {
    TracingParser parser(atom("moov", atom("trak", atom("mdia", atom("hdlr")))));
    parser.walked();
    EXPECT_EQ(parser.parents, (std::vector<std::string>{"", "", "trak", "mdia"}));
}

TEST(MP4ParserBase, StopsInAHeaderThatIsCut) {
    const std::string whole = longAtom("free");
    for (std::size_t size = 1; size < whole.size(); ++size)
        EXPECT_EQ(traceOf(whole.substr(0, size)), "!") << size;
    EXPECT_EQ(traceOf(whole), "  free./free");
    EXPECT_EQ(traceOf(""), "");
}

TEST(MP4ParserBase, GoesOnWhereASizeSmallerThanTheHeaderLeads) {
    // The size of 4 leads to the type, which is read as a size in turn.
    EXPECT_EQ(traceOf(word(4) + word(12) + "free" + zeros(4)),
              "  " + word(12) + "./" + word(12) + "  free./free");
}

TEST(MP4ParserBase, EndsAnAtomThatLeadsToItself) {
    EXPECT_TRUE(traceOf(longAtomOfSize(0, "free")).ends_with("!"));
}

TEST(MP4ParserBase, EndsAtomsThatLeadBack) {
    const std::string back = number(0 - std::uint64_t{8}, 8);
    EXPECT_TRUE(traceOf(atom("free") + word(1) + "free" + back).ends_with("!"));
}

TEST(MP4ParserBase, EndsAContainerWithAChildThatLeadsBack) {
    EXPECT_TRUE(traceOf(atom("moov", longAtomOfSize(0 - std::uint64_t{8}, "free"))).ends_with("!"));
}

TEST(MP4ParserBase, ReadsAgainNoMoreAtomsThanItsLimit) {
    TracingParser parser(longAtomOfSize(0, "free"));
    parser.walked();
    EXPECT_EQ(parser.headers.size(), MP4ParserBase::mostAtomsReadAgain + 1);
}

TEST(MP4ParserBase, ReadsMoreAtomsOnceThanItReadsAgain) {
    std::string bytes;
    for (std::uint32_t count = 0; count < MP4ParserBase::mostAtomsReadAgain + 10; ++count)
        bytes += atom("free");
    EXPECT_FALSE(traceOf(bytes).ends_with("!"));
}

TEST(MP4ParserBase, EndsContainersThatNestTooDeep) {
    const auto nested = [](int levels) {
        std::string bytes;
        for (int level = 0; level < levels; ++level)
            bytes = atom("moov", bytes);
        return bytes;
    };
    EXPECT_FALSE(traceOf(nested(MP4ParserBase::mostLevels)).ends_with("!"));
    EXPECT_TRUE(traceOf(nested(MP4ParserBase::mostLevels + 1)).ends_with("!"));
}

TEST(MP4ParserBase, WalksAnewAfterAWalkThatThrew) {
    TracingParser parser(atom("moov", atom("trak", "cut")));
    const std::string first = parser.walked();
    EXPECT_EQ(parser.walked(), first + first);
}

} // namespace
