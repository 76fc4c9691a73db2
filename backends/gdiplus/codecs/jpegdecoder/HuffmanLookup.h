#pragma once

#include <cstdio> // jpeglib.h needs FILE

#include <jpeglib.h>

#include <array>
#include <cstdint>
#include <optional>

namespace GdiplusBackend {

/// A Huffman code as ITU-T T.81, annex C makes it from a table of lengths.
class HuffmanCode {
public:
    /// None for a null or an impossible table.
    static std::optional<HuffmanCode> of(const JHUFF_TBL* table);

    struct Symbol {
        unsigned int bits = 0; ///< length of its code; 0: no code starts so
        unsigned int value = 0;
    };
    /// The symbol whose code comes first in 16 bits.
    Symbol symbolAt(unsigned int next16) const;

    /// Whether no symbol is greater.
    bool allUpTo(unsigned int greatest) const;

private:
    std::array<unsigned int, 17> ends = {};  ///< by length: the first 16 bits behind its codes
    std::array<unsigned int, 17> bases = {}; ///< by length: the place of code 0 in `values`, modulo 2^32
    std::array<std::uint8_t, 256> values = {};
    unsigned int valueCount = 0;
};

/// Codes of differences of DC coefficients, T.81, F.2.2.1: the symbol is the number of bits that follow.
class DcLookup {
public:
    static constexpr unsigned int windowBits = 10;

    explicit DcLookup(const HuffmanCode& code);

    /// As `HuffmanCode::symbolAt`.
    HuffmanCode::Symbol symbolAt(unsigned int next16) const {
        const HuffmanCode::Symbol& known = symbols[next16 >> (16 - windowBits)];
        return known.bits != 0 ? known : code.symbolAt(next16);
    }

private:
    HuffmanCode code;
    std::array<HuffmanCode::Symbol, 1U << windowBits> symbols = {};
};

/// How to step over the AC coefficients of a block without making them, T.81, F.2.2.2.
class AcSkips {
public:
    static constexpr unsigned int windowBits = 12;
    static constexpr unsigned int blockEnd = 64;
    static constexpr unsigned int longCode = 128; ///< as `places`: the code doesn't fit, ask `skipAt`
    /// As long as the next coefficient lies before this place, several symbols may be skipped at once.
    static constexpr unsigned int severalBefore = 48;

    struct Skip {
        std::uint8_t bits = 0;   ///< codes and the bits that follow them; 0 from `skipAt`: no such code
        std::uint8_t places = 0; ///< in zigzag order; `blockEnd`: no coefficient follows
    };

    explicit AcSkips(const HuffmanCode& code);

    /// What to skip at a place before the end of a block: several symbols where they can't lead beyond it.
    Skip at(unsigned int place, unsigned int window) const {
        return (place < severalBefore ? severals : ones)[window];
    }
    Skip several(unsigned int window) const { return severals[window]; }
    /// One symbol, of any length.
    Skip skipAt(unsigned int next16) const;

private:
    Skip packFrom(unsigned int window) const;

    HuffmanCode code;
    std::array<Skip, 1U << windowBits> ones = {};
    std::array<Skip, 1U << windowBits> severals = {};
};

} // namespace GdiplusBackend
