#pragma once

#include <string_view>

namespace SystemBackend {

/// Simple case folding (The Unicode Standard, 3.13 and CaseFolding.txt, statuses C and S; Unicode 14), in
/// every locale alike. Foldings that change the number of characters and those of Turkic languages are not
/// known.
char32_t foldCase(char32_t character);

/// Whether two UTF-8 texts differ in case only. Bytes that are no UTF-8 equal themselves. Composed and
/// decomposed forms of a character differ.
bool equalIgnoringCase(std::string_view left, std::string_view right);

} // namespace SystemBackend
