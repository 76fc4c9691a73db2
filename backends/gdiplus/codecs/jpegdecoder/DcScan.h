#pragma once

#include "gdiplus/codecs/jpegdecoder/DcPicture.h"
#include "gdiplus/codecs/jpegdecoder/EntropyReader.h"
#include "gdiplus/codecs/jpegdecoder/HuffmanLookup.h"

namespace GdiplusBackend {

/// Decodes the DC coefficients of one scan (ITU-T T.81, F.2 and G.2) and steps over all others.
class DcScan {
public:
    /// A component of the scan with its tables: both of a sequential scan, that for DC of a first
    /// progressive scan, none of a refining one.
    struct Part {
        DcPlane* plane = nullptr;
        std::shared_ptr<const DcLookup> differences = {};
        std::shared_ptr<const AcSkips> skips = {};
    };

    /// `restartInterval` counts MCUs; 0 is none.
    DcScan(DcPicture& target, std::vector<Part> components, unsigned int restartInterval);

    /// The bytes are those behind the header of the scan. The second byte of the marker behind the scan; none
    /// for anything that is not as it should be, after which the coefficients are worthless.
    std::optional<unsigned int> decodeSequential(BufferedReader& bytes);
    /// The same for a progressive scan of DC coefficients without their last `shift` bits.
    std::optional<unsigned int> decodeFirst(BufferedReader& bytes, int shift);
    /// The same for a scan that adds bit `shift`.
    std::optional<unsigned int> decodeRefinement(BufferedReader& bytes, int shift);

private:
    struct McuPart {
        Part part;
        int blocksWide = 1;
        int blocksHigh = 1;
        int lastDc = 0;
    };

    template <typename DecodeBlock>
    std::optional<unsigned int> decode(BufferedReader& bytes, DecodeBlock decodeBlock);
    template <typename DecodeBlock>
    bool decodeMcu(BitReader& bits, int mcuX, int mcuY, DecodeBlock& decodeBlock);
    bool restart(EntropyReader& segments, BitReader& bits);
    bool fitsIntoMcu() const;

    std::vector<McuPart> parts;
    int mcusWide;
    int mcusHigh;
    unsigned int interval;
    unsigned int restarts = 0;
};

} // namespace GdiplusBackend
