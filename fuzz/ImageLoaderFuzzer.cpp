#include "gdiplus/codecs/CodecTable.h"

#include <isa-l/crc.h>

#include <cstdlib>

using namespace GdiplusBackend;

namespace {

/// Counts what comes and touches each byte, so that a sanitizer sees them.
class CountRows : public RowSink {
public:
    void putRow(std::span<const std::byte> row) override {
        ++rows;
        rowBytes = row.size();
        for (const std::byte byte : row)
            sum += std::to_integer<unsigned int>(byte);
    }

    int rows = 0;
    std::size_t rowBytes = 0;
    unsigned int sum = 0;
};

void require(bool condition) {
    if (!condition)
        std::abort();
}

void decodeAt(const PictureDecoder& decoder, int reduction) {
    const PictureFacts& facts = decoder.facts();
    CountRows sink;
    const Result<void> done = decoder.decode(reduction, sink);
    const int width = reducedLength(facts.width, reduction);
    require(sink.rows <= reducedLength(facts.height, reduction));
    if (done)
        require(sink.rows == reducedLength(facts.height, reduction));
    if (sink.rows > 0)
        require(sink.rowBytes ==
                (static_cast<std::size_t>(width) * static_cast<std::size_t>(bitsPerPixel(facts.layout)) + 7) /
                    8);
}

/// Writes the right checksum behind each PNG chunk, which no mutation would find.
void repairChecksums(std::span<std::uint8_t> file) {
    constexpr std::size_t frame = 12; // length, type, checksum
    const auto word = [file](std::size_t place) {
        return std::size_t{file[place]} << 24 | std::size_t{file[place + 1]} << 16 |
               std::size_t{file[place + 2]} << 8 | file[place + 3];
    };
    for (std::size_t place = 8; place + frame <= file.size();) {
        const std::size_t length = word(place);
        if (length > file.size() - place - frame)
            return;
        const std::uint32_t checksum = crc32_gzip_refl(0, &file[place + 4], length + 4);
        for (std::size_t i = 0; i < 4; ++i)
            file[place + 8 + length + i] = static_cast<std::uint8_t>(checksum >> (24 - 8 * i));
        place += frame + length;
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t limit);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t limit,
                                               unsigned int seed) {
    const std::span<std::uint8_t> mutated(data, LLVMFuzzerMutate(data, size, limit));
    const bool leaveSomeWrong = seed % 16 == 0;
    if (!leaveSomeWrong && startsWith(std::as_bytes(mutated), "\x89PNG"))
        repairChecksums(mutated);
    return mutated.size();
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Pictures as large as a real budget allows, or drawn for as long, would only make each run slow.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): before any thread
    return setenv("KESTO_PIXEL_BUDGET", "1000000", 1) + setenv("KESTO_SVG_TIME_LIMIT_MS", "1000", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    const auto decoder = openPicture(fromMemory({bytes.begin(), bytes.end()}));
    if (!decoder)
        return 0;
    decodeAt(**decoder, 1);
    for (const int reduction : (*decoder)->facts().reductions)
        decodeAt(**decoder, reduction);
    return 0;
}
