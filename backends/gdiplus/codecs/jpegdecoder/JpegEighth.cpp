#include "gdiplus/codecs/jpegdecoder/JpegEighth.h"

#include "gdiplus/codecs/jpegdecoder/DcScan.h"

#include <algorithm>
#include <array>
#include <memory>

namespace GdiplusBackend {

namespace {

enum Marker : unsigned int { // ITU-T T.81, table B.1
    DefineHuffmanTables = 0xC4,
    EndOfImage = 0xD9,
    StartOfScan = 0xDA,
    DefineRestartInterval = 0xDD,
    FirstApplication = 0xE0,
    LastApplication = 0xEF,
    Comment = 0xFE,
};

constexpr int notSeen = -1;

/// What T.81, B.2.3 says of a scan.
struct ScanHeader {
    struct Component {
        std::size_t plane = 0;
        unsigned int dcTable = 0;
        unsigned int acTable = 0;
    };
    std::vector<Component> components;
    int first = 0; ///< Ss
    int last = 63; ///< Se
    int high = 0;  ///< Ah
    int low = 0;   ///< Al
};

/// What the scans so far have told of a component.
struct Progress {
    int dcShift = notSeen; ///< the last bit of the DC coefficients that is known
    bool frequencies = false;
};

/// A Huffman table of the file; components that use the same share what is made of it.
template <typename Lookup>
struct CodingTable {
    std::optional<HuffmanCode> code;
    std::shared_ptr<const Lookup> lookup;

    void set(const JHUFF_TBL* table) {
        code = HuffmanCode::of(table);
        lookup = nullptr;
    }
    std::shared_ptr<const Lookup> shared() {
        if (!lookup)
            lookup = std::make_shared<const Lookup>(*code);
        return lookup;
    }
};

struct CodingTables {
    std::array<CodingTable<DcLookup>, NUM_HUFF_TBLS> dc;
    std::array<CodingTable<AcSkips>, NUM_HUFF_TBLS> ac;
};

/// Walks through the scans of a file. Each function gives false for what is not handled.
class ScanWalker {
public:
    ScanWalker(const jpeg_decompress_struct& info, DcPicture& target, BufferedReader& input)
        : header(info)
        , picture(target)
        , bytes(input)
        , progress(target.planes.size())
        , restartInterval(info.restart_interval) {}

    bool walk();

private:
    ScanHeader firstScan() const;
    bool decodeScan(const ScanHeader& scan);
    bool decodeSequential(const ScanHeader& scan);
    bool decodeDc(const ScanHeader& scan);
    bool skipFrequencies(const ScanHeader& scan);
    bool complete() const;
    bool finishScan(std::optional<unsigned int> markerBehind);
    bool toNextMarker();
    bool takeSegment();
    std::optional<std::vector<std::uint8_t>> readSegment();
    bool takeHuffmanTables(std::span<const std::uint8_t> segment);
    bool takeRestartInterval(std::span<const std::uint8_t> segment);
    bool takeScan(std::span<const std::uint8_t> segment);

    const jpeg_decompress_struct& header;
    DcPicture& picture;
    BufferedReader& bytes;
    CodingTables tables;
    std::vector<Progress> progress;
    unsigned int restartInterval;
    unsigned int marker = 0; ///< where `bytes` has come to, behind it
    int scans = 0;
};

bool ScanWalker::walk() {
    for (std::size_t i = 0; i < NUM_HUFF_TBLS; ++i) {
        tables.dc[i].set(header.dc_huff_tbl_ptrs[i]);
        tables.ac[i].set(header.ac_huff_tbl_ptrs[i]);
    }
    if (!decodeScan(firstScan()))
        return false;
    while (marker != EndOfImage)
        if (!takeSegment())
            return false;
    return complete();
}

ScanHeader ScanWalker::firstScan() const {
    ScanHeader scan;
    scan.first = header.Ss;
    scan.last = header.Se;
    scan.high = header.Ah;
    scan.low = header.Al;
    for (int i = 0; i < header.comps_in_scan; ++i) {
        const jpeg_component_info& component = *header.cur_comp_info[i];
        scan.components.push_back({static_cast<std::size_t>(component.component_index),
                                   static_cast<unsigned int>(component.dc_tbl_no),
                                   static_cast<unsigned int>(component.ac_tbl_no)});
    }
    return scan;
}

bool ScanWalker::decodeScan(const ScanHeader& scan) {
    if (++scans > JpegReader::mostScans)
        return false;
    for (const ScanHeader::Component& component : scan.components)
        if (component.dcTable >= NUM_HUFF_TBLS || component.acTable >= NUM_HUFF_TBLS)
            return false;
    if (!header.progressive_mode)
        return decodeSequential(scan);
    // T.81, G.1.1.1
    if (scan.low > 13 || (scan.high != 0 && scan.low != scan.high - 1))
        return false;
    return scan.first == 0 ? decodeDc(scan) : skipFrequencies(scan);
}

bool ScanWalker::decodeSequential(const ScanHeader& scan) {
    std::vector<DcScan::Part> parts;
    for (const ScanHeader::Component& component : scan.components) {
        Progress& known = progress[component.plane];
        CodingTable<DcLookup>& dc = tables.dc[component.dcTable];
        CodingTable<AcSkips>& ac = tables.ac[component.acTable];
        if (known.dcShift != notSeen || !dc.code || !ac.code || !dc.code->allUpTo(15))
            return false;
        known = {.dcShift = 0, .frequencies = true};
        parts.push_back({&picture.planes[component.plane], dc.shared(), ac.shared()});
    }
    return finishScan(DcScan(picture, std::move(parts), restartInterval).decodeSequential(bytes));
}

bool ScanWalker::decodeDc(const ScanHeader& scan) {
    const bool refines = scan.high != 0;
    std::vector<DcScan::Part> parts;
    for (const ScanHeader::Component& component : scan.components) {
        Progress& known = progress[component.plane];
        if (scan.last != 0 || known.dcShift != (refines ? scan.high : notSeen))
            return false;
        known.dcShift = scan.low;
        DcScan::Part part = {&picture.planes[component.plane]};
        if (!refines) {
            CodingTable<DcLookup>& table = tables.dc[component.dcTable];
            if (!table.code || !table.code->allUpTo(15))
                return false;
            part.differences = table.shared();
        }
        parts.push_back(std::move(part));
    }
    DcScan decoder(picture, std::move(parts), restartInterval);
    return finishScan(refines ? decoder.decodeRefinement(bytes, scan.low)
                              : decoder.decodeFirst(bytes, scan.low));
}

bool ScanWalker::skipFrequencies(const ScanHeader& scan) {
    const bool possible = scan.components.size() == 1 && scan.last >= scan.first && scan.last <= 63 &&
                          tables.ac[scan.components[0].acTable].code;
    if (!possible)
        return false;
    if (scan.first == 1)
        progress[scan.components[0].plane].frequencies = true;
    return finishScan(EntropyReader::skipScan(bytes));
}

/// Where frequencies or the last bits of a component are missing, libjpeg may smooth its blocks.
bool ScanWalker::complete() const {
    return std::all_of(progress.begin(), progress.end(), [](const Progress& component) {
        return component.dcShift == 0 && component.frequencies;
    });
}

bool ScanWalker::finishScan(std::optional<unsigned int> markerBehind) {
    marker = markerBehind.value_or(0);
    return marker != 0;
}

bool ScanWalker::toNextMarker() {
    std::array<std::byte, 2> next = {};
    if (!bytes.read(next) || next[0] != std::byte{0xFF})
        return false;
    marker = std::to_integer<unsigned int>(next[1]);
    return true;
}

bool ScanWalker::takeSegment() {
    const bool skipped = (marker >= FirstApplication && marker <= LastApplication) || marker == Comment;
    const unsigned int kind = marker;
    if (!skipped && kind != DefineHuffmanTables && kind != DefineRestartInterval && kind != StartOfScan)
        return false;
    const std::optional<std::vector<std::uint8_t>> segment = readSegment();
    if (!segment)
        return false;
    if (kind == StartOfScan)
        return takeScan(*segment);
    if (kind == DefineHuffmanTables && !takeHuffmanTables(*segment))
        return false;
    if (kind == DefineRestartInterval && !takeRestartInterval(*segment))
        return false;
    return toNextMarker();
}

std::optional<std::vector<std::uint8_t>> ScanWalker::readSegment() {
    std::array<std::byte, 2> length = {};
    if (!bytes.read(length))
        return std::nullopt;
    const auto size = std::to_integer<std::size_t>(length[0]) << 8 | std::to_integer<std::size_t>(length[1]);
    if (size < length.size())
        return std::nullopt;
    std::vector<std::uint8_t> segment(size - length.size());
    if (!bytes.read(std::as_writable_bytes(std::span(segment))))
        return std::nullopt;
    return segment;
}

/// T.81, B.2.4.2
bool ScanWalker::takeHuffmanTables(std::span<const std::uint8_t> segment) {
    constexpr std::size_t lengths = 16;
    while (!segment.empty()) {
        if (segment.size() < 1 + lengths)
            return false;
        const unsigned int kind = segment[0] >> 4;
        const std::size_t place = segment[0] & 15U;
        JHUFF_TBL table = {};
        std::copy_n(segment.begin() + 1, lengths, table.bits + 1);
        std::size_t count = 0;
        for (const std::uint8_t codes : segment.subspan(1, lengths))
            count += codes;
        segment = segment.subspan(1 + lengths);
        if (kind > 1 || place >= NUM_HUFF_TBLS || count > std::size(table.huffval) || count > segment.size())
            return false;
        std::copy_n(segment.begin(), count, table.huffval);
        segment = segment.subspan(count);
        if (kind == 0)
            tables.dc[place].set(&table);
        else
            tables.ac[place].set(&table);
    }
    return true;
}

bool ScanWalker::takeRestartInterval(std::span<const std::uint8_t> segment) {
    if (segment.size() != 2)
        return false;
    restartInterval = static_cast<unsigned int>(segment[0] << 8 | segment[1]);
    return true;
}

bool ScanWalker::takeScan(std::span<const std::uint8_t> segment) {
    const std::size_t count = segment.empty() ? 0 : segment[0];
    if (count < 1 || count > picture.planes.size() || segment.size() != 1 + count * 2 + 3)
        return false;
    ScanHeader scan;
    for (std::size_t i = 0; i < count; ++i) {
        const int id = segment[1 + i * 2];
        const unsigned int selected = segment[2 + i * 2];
        const auto found = std::find_if(picture.planes.begin(), picture.planes.end(),
                                        [id](const DcPlane& plane) { return plane.id == id; });
        if (found == picture.planes.end())
            return false;
        scan.components.push_back(
            {static_cast<std::size_t>(found - picture.planes.begin()), selected >> 4, selected & 15});
    }
    const auto rest = segment.last(3);
    scan.first = rest[0];
    scan.last = rest[1];
    scan.high = rest[2] >> 4;
    scan.low = rest[2] & 15;
    return decodeScan(scan);
}

} // namespace

EighthOutcome decodeEighth(const JpegReader& reader, const ByteSource& source, RowSink& sink) {
    std::optional<DcPicture> picture;
    if (!reader.info.arith_code)
        picture = DcPicture::forHeader(reader.info);
    if (!picture)
        return EighthOutcome::NotHandled;
    BufferedReader bytes(source, reader.position());
    if (!ScanWalker(reader.info, *picture, bytes).walk())
        return EighthOutcome::NotHandled;
    picture->giveRows(sink);
    return EighthOutcome::Handled;
}

} // namespace GdiplusBackend
