#include "gdiplus/codecs/jpegdecoder/HuffmanLookup.h"

#include <algorithm>
#include <iterator>

namespace GdiplusBackend {

std::optional<HuffmanCode> HuffmanCode::of(const JHUFF_TBL* table) {
    if (!table)
        return std::nullopt;
    HuffmanCode result;
    std::copy(std::begin(table->huffval), std::end(table->huffval), result.values.begin());
    unsigned int code = 0;
    for (unsigned int length = 1; length <= 16; ++length) {
        const unsigned int count = table->bits[length];
        result.bases[length] = result.valueCount - code;
        code += count;
        result.valueCount += count;
        // A code of nothing but ones is not allowed.
        if (count > 0 && (code >= 1U << length || result.valueCount > result.values.size()))
            return std::nullopt;
        result.ends[length] = code << (16 - length);
        code *= 2;
    }
    return result;
}

HuffmanCode::Symbol HuffmanCode::symbolAt(unsigned int next16) const {
    for (unsigned int length = 1; length <= 16; ++length)
        if (next16 < ends[length])
            return {length, values[(bases[length] + (next16 >> (16 - length))) % values.size()]};
    return {};
}

bool HuffmanCode::allUpTo(unsigned int greatest) const {
    return std::all_of(values.begin(), values.begin() + valueCount,
                       [greatest](unsigned int value) { return value <= greatest; });
}

DcLookup::DcLookup(const HuffmanCode& symbolCode)
    : code(symbolCode) {
    for (unsigned int window = 0; window < symbols.size(); ++window) {
        const HuffmanCode::Symbol symbol = code.symbolAt(window << (16 - windowBits));
        if (symbol.bits <= windowBits)
            symbols[window] = symbol;
    }
}

AcSkips::AcSkips(const HuffmanCode& symbolCode)
    : code(symbolCode) {
    for (unsigned int window = 0; window < ones.size(); ++window) {
        const HuffmanCode::Symbol symbol = code.symbolAt(window << (16 - windowBits));
        const bool fits = symbol.bits > 0 && symbol.bits <= windowBits;
        ones[window] = fits ? skipAt(window << (16 - windowBits)) : Skip{0, longCode};
    }
    for (unsigned int window = 0; window < severals.size(); ++window)
        severals[window] = packFrom(window);
}

AcSkips::Skip AcSkips::skipAt(unsigned int next16) const {
    const HuffmanCode::Symbol symbol = code.symbolAt(next16);
    const unsigned int run = symbol.value >> 4;
    const unsigned int size = symbol.value & 15;
    const bool ends = size == 0 && run != 15;
    return {static_cast<std::uint8_t>(symbol.bits == 0 ? 0 : symbol.bits + size),
            static_cast<std::uint8_t>(ends ? blockEnd : run + 1)};
}

/// As many symbols as lie whole in the window, but none that may come behind the end of the block.
AcSkips::Skip AcSkips::packFrom(unsigned int window) const {
    Skip all = ones[window];
    while (all.bits > 0 && all.bits < windowBits && all.places <= blockEnd - severalBefore) {
        const Skip next = ones[window << all.bits & ((1U << windowBits) - 1)];
        if (next.places == longCode || all.bits + next.bits > windowBits)
            break;
        all.bits = static_cast<std::uint8_t>(all.bits + next.bits);
        all.places = static_cast<std::uint8_t>(all.places + next.places);
    }
    return all;
}

} // namespace GdiplusBackend
